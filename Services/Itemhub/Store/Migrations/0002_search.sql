-- How texts are found is each database's own affair: @SEARCH@ is what it needs before the first tenant.

@SEARCH@;
