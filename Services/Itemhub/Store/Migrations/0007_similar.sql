-- What resembles a caption is found, too, where the database can tell: @SIMILAR@.

@SIMILAR@;
