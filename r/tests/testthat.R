library(testthat)
library(tavrelle)

test_check("tavrelle")
