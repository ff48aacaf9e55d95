# An interrupt sent to an R process in the middle of a long study ends the study after the
# populations under way, and leaves R able to run another.

test_that("an interrupt ends a long study() and R goes on working", {
  skip_on_os("windows")
  folder <- tempfile("interrupt")
  dir.create(folder)
  pid_file <- file.path(folder, "pid")
  outcome_file <- file.path(folder, "outcome")
  progress_file <- file.path(folder, "progress")
  script <- file.path(folder, "child.R")
  writeLines(c(
    "library(tavrelle)",
    sprintf("demo <- %s", deparse(demo_file("DemoThreePopulations.gen"))),
    "genotypes <- read_genotypes(demo)",
    "copies <- lapply(1:40, function(i) {",
    "  copy <- genotypes",
    "  copy$population <- paste0(copy$population, '_', i)",
    "  copy",
    "})",
    "long <- do.call(rbind, copies)",
    sprintf("writeLines(as.character(Sys.getpid()), %s)", deparse(pid_file)),
    "outcome <- tryCatch({",
    "  study(long, motif = 2, seed = 1, randomisations = 10000, threads = 1)",
    "  'finished'",
    "}, interrupt = function(condition) 'interrupted')",
    "after <- study(demo, motif = 2, seed = 1, bootstrap = 0)",
    sprintf("writeLines(c(outcome, nrow(after$loci)), %s)", deparse(outcome_file))
  ), script)
  rscript <- file.path(R.home("bin"), "Rscript")
  system2(rscript, shQuote(script), wait = FALSE, stdout = FALSE, stderr = progress_file)

  wait_for <- function(path, seconds) {
    for (i in seq_len(seconds * 10)) {
      if (file.exists(path) && length(readLines(path, warn = FALSE)) > 0L) return(TRUE)
      Sys.sleep(0.1)
    }
    FALSE
  }
  expect_true(wait_for(pid_file, 120))
  pid <- as.integer(readLines(pid_file))
  # Let a population or two finish first.
  wait_for(progress_file, 120)
  expect_true(tools::pskill(pid, tools::SIGINT))
  finished <- wait_for(outcome_file, 300)
  if (!finished) tools::pskill(pid, tools::SIGKILL)
  expect_true(finished)
  outcome <- readLines(outcome_file)
  expect_equal(outcome[1], "interrupted")
  expect_gt(as.integer(outcome[2]), 0L)
  # Only the population under way finished after the interrupt: far fewer than the 120.
  lines <- grep("^Population [0-9]+ of 120", readLines(progress_file), value = TRUE)
  expect_lt(length(lines), 10L)
})

test_that("a cancelled study keeps the populations that finished, in order", {
  demo <- demo_file("DemoThreePopulations.gen")
  run <- tavrelle:::run_study
  settings <- tavrelle:::study_settings(2, 3, 1000, 95, 0, 350, "proceed", 1)
  partial <- suppressMessages(run(demo, demo, settings, cancel_after = 1L))
  whole <- suppressMessages(run(demo, demo, settings))
  expect_false(attr(partial, "complete"))
  expect_true(attr(whole, "complete"))
  # The one worker may have taken the next population before the flag was set.
  done <- partial$populations$population
  expect_true(identical(done, 1L) || identical(done, 1:2), label = paste(done, collapse = " "))
  expect_identical(partial$loci, whole$loci[whole$loci$population %in% done, ])
})
