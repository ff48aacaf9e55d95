# What study() takes, made into a file the engine reads: a path as it is, a data frame of
# read_genotypes()'s shape or a genind written as a Genepop file (three digits per allele), which
# the engine reads back to the same table the batch program would load.

# A study's input: the file to load, the label its reports name, and the population names a data
# frame gives (none for a file: the engine names those).
study_input <- function(x, label) {
  if (is.character(x)) {
    return(list(path = check_path(x), label = x, populations = character(), temporary = FALSE))
  }
  if (inherits(x, "genind")) x <- genind_genotypes(x)
  if (!is.data.frame(x))
    stop("x: give a file name, a data frame as read_genotypes() returns, or an adegenet genind.",
         call. = FALSE)
  path <- tempfile("tavrelle", fileext = ".gen")
  populations <- write_genepop(x, path, title = attr(x, "title") %||% paste("Data frame", label))
  list(path = path, label = label, populations = populations, temporary = TRUE)
}

`%||%` <- function(a, b) if (is.null(a)) b else a

# The loci of a data frame: the attribute read_genotypes() sets, or the allele columns' names in
# pairs with ".1" taken off the first of each.
genotype_loci <- function(x) {
  allele_columns <- names(x)[-(1:2)]
  if (length(allele_columns) == 0L || length(allele_columns) %% 2L != 0L)
    stop("x: after sample and population, give two allele columns per locus.", call. = FALSE)
  loci <- attr(x, "loci")
  if (is.null(loci) || length(loci) * 2L != length(allele_columns))
    loci <- sub("[._]?1$", "", allele_columns[c(TRUE, FALSE)])
  loci
}

# Genepop's three characters per allele; a missing allele is "000".
allele_text <- function(column, name) {
  if (is.factor(column)) column <- as.character(column)
  if (is.character(column)) {
    column[is.na(column) | column %in% c("", "0", "00")] <- "000"
    wrong <- nchar(column) != 3L
    if (any(wrong))
      stop("x: column ", name, " holds ", sQuote(column[wrong][1]),
           ", which is not three characters; Genepop alleles are sizes of up to three digits.",
           call. = FALSE)
    return(column)
  }
  if (!is.numeric(column) || any(column != round(column), na.rm = TRUE))
    stop("x: column ", name, " holds something other than whole allele sizes.", call. = FALSE)
  if (any(column < 0 | column > 999, na.rm = TRUE))
    stop("x: column ", name, " holds sizes outside 0 to 999; Genepop files have three digits ",
         "per allele.", call. = FALSE)
  ifelse(is.na(column), "000", sprintf("%03d", as.integer(column)))
}

# Writes the genotypes as a Genepop file, the populations in the order of the factor's levels (or
# of first appearance), each population's samples in their order. Returns the population names.
write_genepop <- function(x, path, title) {
  loci <- genotype_loci(x)
  sample <- as.character(x[[1]])
  population <- x[[2]]
  if (anyNA(population)) stop("x: every sample needs a population.", call. = FALSE)
  if (!is.factor(population)) population <- factor(population, levels = unique(population))
  population <- droplevels(population)
  for (text in list(sample, loci))
    if (any(grepl("[,\r\n]", text)))
      stop("x: sample and locus names may not hold commas or line breaks (Genepop uses them ",
           "as separators): ", sQuote(grep("[,\r\n]", text, value = TRUE)[1]), call. = FALSE)
  if (any(sample == "")) stop("x: every sample needs a name.", call. = FALSE)
  alleles <- Map(allele_text, x[-(1:2)], names(x)[-(1:2)])
  first <- alleles[c(TRUE, FALSE)]
  second <- alleles[c(FALSE, TRUE)]
  genotypes <- do.call(paste, c(Map(paste0, first, second), sep = " "))
  rows <- paste0(sample, " ,  ", genotypes)
  body <- unlist(lapply(levels(population), function(p) c("Pop", rows[population == p])))
  title <- gsub("[\r\n]+", " ", title)
  writeLines(enc2utf8(c(title, loci, body)), path, useBytes = TRUE)
  levels(population)
}

# A diploid genind whose alleles are sizes, as read_genotypes()'s data frame.
genind_genotypes <- function(x) {
  if (!requireNamespace("adegenet", quietly = TRUE))
    stop("x is a genind: install the adegenet package to read it.", call. = FALSE)
  if (any(adegenet::ploidy(x) != 2L))
    stop("x: Tavrelle analyses diploid genotypes; this genind is not diploid.", call. = FALSE)
  table <- adegenet::genind2df(x, oneColPerAll = TRUE, usepop = FALSE)
  sizes <- lapply(table, function(column) {
    column <- as.character(column)
    column[column %in% "NA"] <- NA
    if (!all(grepl("^[0-9]+$", column[!is.na(column)])))
      stop("x: the genind's alleles must be named by their sizes (such as \"167\"); found ",
           sQuote(column[!is.na(column) & !grepl("^[0-9]+$", column)][1]), ".", call. = FALSE)
    as.integer(column)
  })
  population <- adegenet::pop(x)
  if (is.null(population)) population <- factor(rep("1", adegenet::nInd(x)))
  genotypes <- data.frame(sample = adegenet::indNames(x), population = population,
                          stringsAsFactors = FALSE)
  genotypes <- cbind(genotypes, as.data.frame(sizes, optional = TRUE))
  loci <- adegenet::locNames(x)
  names(genotypes)[-(1:2)] <- allele_names(loci)
  attr(genotypes, "loci") <- loci
  genotypes
}
