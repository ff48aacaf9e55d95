# The package and tavrelle-batch run one engine: the same file and seed give the same CSV, column
# for column, and the same HTML report. The CI script names the batch program in TAVRELLE_BATCH.

# A study report without the lines that tell when and by which command it was made.
without_run_lines <- function(report) {
  gsub("(^|\n)<tr><th>(Report made|Command)</th>[^\n]*", "", report, perl = TRUE)
}

run_batch <- function(file, arguments) {
  batch <- Sys.getenv("TAVRELLE_BATCH")
  csv <- tempfile(fileext = ".csv")
  html <- tempfile(fileext = ".html")
  status <- system2(batch, c(shQuote(file), arguments, "--csv", shQuote(csv), "--report",
                             shQuote(html)), stdout = FALSE, stderr = FALSE)
  expect_equal(status, 0L)
  list(csv = readChar(csv, file.size(csv), useBytes = TRUE),
       html = readChar(html, file.size(html), useBytes = TRUE))
}

test_that("study() gives tavrelle-batch's numbers on every column", {
  skip_if(Sys.getenv("TAVRELLE_BATCH") == "", "TAVRELLE_BATCH names no batch program")
  demo <- demo_file("DemoThreePopulations.gen")
  batch <- run_batch(demo, c("--repeat", "2", "--repeat", "Tav226=3", "--seed", "4711",
                             "--bootstrap", "200", "--threads", "2"))
  result <- suppressMessages(
    study(demo, motif = c(2, Tav226 = 3), seed = 4711, bootstrap = 200, threads = 2)
  )
  expected <- tavrelle:::read_batch_csv(batch$csv)
  expect_identical(names(result$loci), names(expected))
  expect_gt(nrow(expected), 3L)
  for (column in names(expected))
    expect_identical(result$loci[[column]], expected[[column]], label = column)
  expect_identical(attr(result, "csv"), batch$csv)

  page <- tempfile(fileext = ".html")
  report(result, page)
  expect_identical(without_run_lines(readChar(page, file.size(page), useBytes = TRUE)),
                   without_run_lines(batch$html))
})

test_that("the number of threads leaves every number as it is", {
  demo <- demo_file("DemoThreePopulations.gen")
  one <- suppressMessages(study(demo, motif = 2, seed = 9, bootstrap = 50, threads = 1))
  three <- suppressMessages(study(demo, motif = 2, seed = 9, bootstrap = 50, threads = 3))
  expect_identical(one$loci, three$loci)
  expect_identical(one$populations, three$populations)
})
