#' tavrelle: null alleles, stutter and large allele drop-out in microsatellite data
#'
#' The engine of the Tavrelle desktop and batch programs, in R. [read_genotypes()] reads a data
#' file into a data frame, [study()] analyses every population of a file, a data frame or an
#' adegenet `genind`, and [report()] writes the study as one HTML page. The numbers are those
#' `tavrelle-batch` gives for the same data and seed.
#'
#' @keywords internal
#' @useDynLib tavrelle, .registration = TRUE
#' @importFrom Rcpp evalCpp
"_PACKAGE"
