#' Read a genotype data file
#'
#' Reads a data file with the engine's own reader, as the desktop and batch programs read it.
#'
#' The package reads what the engine reads: today Genepop files with three digits per allele
#' (six per locus). Workbooks are read by the desktop and batch programs only; convert them with
#' `tavrelle-batch convert data.xlsx data.gen`.
#'
#' @param path The file.
#' @param format The file's format, one of [genotype_formats()]; `NULL` tells it by the file's
#'   name.
#' @return A data frame with one row per sample: `sample`, `population` (a factor whose levels
#'   are the population names as Tavrelle shows them, in file order), then two columns per locus,
#'   `<locus>.1` and `<locus>.2`, holding allele sizes as integers (`NA` for a missing allele).
#'   An allele column that holds anything but whole numbers keeps its text, so that nothing is
#'   lost. The file's title line is the attribute `"title"`, the loci the attribute `"loci"`.
#' @examples
#' demo <- system.file("extdata", "DemoNullAlleles.gen", package = "tavrelle")
#' genotypes <- read_genotypes(demo)
#' head(genotypes[, 1:6])
#' @export
read_genotypes <- function(path, format = NULL) {
  path <- check_path(path)
  raw <- .engine_read(path, engine_format(format))
  alleles <- lapply(raw$alleles, allele_column)
  names(alleles) <- allele_names(raw$loci)
  levels <- raw$population_names
  if (anyDuplicated(levels)) levels <- make.unique(levels, sep = " ")
  genotypes <- data.frame(
    sample = raw$sample,
    population = factor(levels[raw$population], levels = levels),
    stringsAsFactors = FALSE
  )
  genotypes <- cbind(genotypes, as.data.frame(alleles, optional = TRUE))
  attr(genotypes, "title") <- raw$title
  attr(genotypes, "loci") <- raw$loci
  genotypes
}

#' The formats read_genotypes() and study() read
#'
#' @return The names `format` takes, one for each of the engine's readers.
#' @examples
#' genotype_formats()
#' @export
genotype_formats <- function() {
  .engine_formats()
}

engine_format <- function(format) {
  if (is.null(format)) return("")
  if (!is.character(format) || length(format) != 1L || is.na(format))
    stop("format: give one of ", paste(sQuote(genotype_formats()), collapse = ", "),
         ", or NULL to tell it by the file's name.", call. = FALSE)
  tolower(format)
}

check_path <- function(path) {
  if (!is.character(path) || length(path) != 1L || is.na(path))
    stop("path: give the name of one file.", call. = FALSE)
  if (!file.exists(path)) stop("Could not load ", path, ": there is no such file.", call. = FALSE)
  path
}

allele_names <- function(loci) {
  as.vector(rbind(paste0(loci, ".1"), paste0(loci, ".2")))
}

# Whole numbers become integers, missing alleles ("000") NA; any other text keeps the column as
# it was read.
allele_column <- function(text) {
  if (!all(grepl("^[0-9]{1,9}$", text))) return(text)
  sizes <- as.integer(text)
  sizes[sizes == 0L] <- NA_integer_
  sizes
}
