# What doxygen can't follow it doesn't see.
# A class whose base is itself with one row less.
s/ : Wrappers<kRows, kCount - 1>$//
# Links to pages that aren't among the headers'.
s/\[\([^]]*\)\](Docs[^)]*)/\1/g
