test_that("read_genotypes() reads every sample, population and allele of a Genepop file", {
  genotypes <- read_genotypes(demo_file("DemoThreePopulations.gen"))
  expect_equal(nrow(genotypes), 45 + 52 + 60)
  expect_equal(names(genotypes)[1:4], c("sample", "population", "Tav205.1", "Tav205.2"))
  expect_equal(as.vector(table(genotypes$population)), c(45, 52, 60))
  expect_equal(attr(genotypes, "loci"),
               c("Tav205", "Tav211", "Tav218", "Tav226", "Tav233", "Tav241"))
  # pop1_002's last locus is "000000": two missing alleles.
  second <- genotypes[genotypes$sample == "pop1_002", ]
  expect_equal(unlist(second[, c("Tav205.1", "Tav205.2", "Tav241.1", "Tav241.2")],
                      use.names = FALSE), c(130L, 136L, NA, NA))
  expect_true(all(vapply(genotypes[-(1:2)], is.integer, logical(1))))
})

test_that("a data frame, a genind and the file they came from give the same study", {
  demo <- demo_file("DemoThreePopulations.gen")
  from_file <- suppressMessages(study(demo, motif = 2, seed = 5, bootstrap = 20))
  genotypes <- read_genotypes(demo)
  from_frame <- suppressMessages(study(genotypes, motif = 2, seed = 5, bootstrap = 20))
  without_file <- function(x) x$loci[names(x$loci) != "file"]
  expect_identical(without_file(from_frame), without_file(from_file))
  expect_equal(from_frame$settings$file, "genotypes")

  skip_if_not_installed("adegenet")
  x <- adegenet::df2genind(
    do.call(cbind, lapply(attr(genotypes, "loci"), function(l) {
      a <- genotypes[[paste0(l, ".1")]]
      b <- genotypes[[paste0(l, ".2")]]
      ifelse(is.na(a) | is.na(b), NA, paste(a, b, sep = "/"))
    })),
    sep = "/", ind.names = genotypes$sample, loc.names = attr(genotypes, "loci"),
    pop = genotypes$population, ploidy = 2
  )
  from_genind <- suppressMessages(study(x, motif = 2, seed = 5, bootstrap = 20))
  # A genind keeps each genotype's alleles in its own order, smaller first, so the rounds pair the
  # pooled copies from another starting order: the verdicts and estimates agree, the Monte Carlo
  # fractions of the rounds differ in their last digits.
  exact <- function(x) {
    loci <- without_file(x)
    loci[!grepl("_fraction(_se)?$|_borderline$", names(loci))]
  }
  expect_identical(exact(from_genind), exact(from_file))
})

test_that("bad input is refused with a message that names what is wrong", {
  demo <- demo_file("DemoNullAlleles.gen")
  cases <- list(
    list(quote(study(demo, motif = 7)), "motif"),
    list(quote(study(demo, motif = c(Tav101 = 2))), "no repeat motif for 'Tav107'"),
    list(quote(study(demo, motif = c(2, Tav999 = 3))), "no locus 'Tav999'"),
    list(quote(study(demo, motif = 2, seed = -1)), "seed"),
    list(quote(study(demo, motif = 2, randomisations = 500)), "randomisations"),
    list(quote(study(demo, motif = 2, confidence = 90)), "confidence"),
    list(quote(study(demo, motif = 2, on_suspect = "ask")), "on_suspect"),
    list(quote(study(tempfile(), motif = 2)), "no such file"),
    list(quote(read_genotypes(demo, format = "structure")), "reads 'genepop'"),
    list(quote(study(data.frame(sample = "a,b", population = 1, L.1 = 100, L.2 = 102),
                     motif = 2)), "commas"),
    list(quote(study(data.frame(sample = "a", population = 1, L.1 = 1000, L.2 = 102),
                     motif = 2)), "three digits")
  )
  for (case in cases) expect_error(eval(case[[1]]), case[[2]], fixed = TRUE)

  not_genepop <- tempfile(fileext = ".gen")
  writeLines(c("title", "L1", "Pop", "no comma here"), not_genepop)
  expect_error(read_genotypes(not_genepop), not_genepop, fixed = TRUE)
})
