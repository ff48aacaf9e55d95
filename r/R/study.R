#' Analyse every population for null alleles, stutter and large allele drop-out
#'
#' Runs the analysis of the desktop program's Analyse command on every population, as
#' `tavrelle-batch` does: the population check, the randomisation test of each locus with a
#' fresh generator from `seed` for every population, the verdicts, the null allele estimates and
#' the likelihood estimates with their bootstrap intervals. The same data and seed give the same
#' numbers as `tavrelle-batch --csv`, whatever `threads` is.
#'
#' Populations are analysed `threads` at a time; each finished population is reported as a line
#' (a message, so [suppressMessages()] quietens it) or, in an interactive session, on a progress
#' bar. An interrupt (Ctrl-C or Esc) lets the populations under way finish, starts no other, and
#' ends the call with R's interrupt.
#'
#' @param x A genotype file (its format told by its name; see [read_genotypes()], whose data frame
#'   a file of another format can be read into first), a data frame of
#'   [read_genotypes()]'s shape (sample, population, then two allele columns per locus), or an
#'   adegenet `genind` whose alleles are named by their sizes.
#' @param motif The repeat motif (length in bases, 1 to 6): one number for every locus, or a
#'   vector named by locus; an unnamed element gives the motif of the loci not named.
#' @param seed The generator's seed, a whole number from 0 to 2147483647. `NULL` draws one from
#'   R's random numbers, so that [set.seed()] makes the study reproducible; the seed used is in
#'   `$settings$seed`.
#' @param randomisations Random pairings per locus, 1000 to 10000.
#' @param confidence The confidence interval of the tests: 95, 99, 100 (the full range) or
#'   `"bonferroni"`.
#' @param bootstrap Bootstrap replicates for the intervals of the likelihood estimates (0 for
#'   none).
#' @param max_allele_size The largest allele size the population check accepts, 50 to 700.
#' @param on_suspect What to do with a population in which the check finds suspect values:
#'   `"proceed"` analyses the values as they stand, `"omit"` makes them missing, `"stop"` leaves
#'   the population unanalysed.
#' @param threads How many populations to analyse at once, 1 to 256.
#' @return An object of class `tavrelle_study`, a list of
#'   \describe{
#'     \item{loci}{one row per population and locus, the columns of `tavrelle-batch --csv`;}
#'     \item{populations}{one row per population: its status, why it stopped, its suspect values,
#'       the inbreeding coefficient F with its interval, the model chosen and the verdict;}
#'     \item{settings}{the settings of the run, the seed used among them;}
#'     \item{locus_totals}{one row per locus: in how many populations it was analysed and showed
#'       a null allele, stutter or large allele drop-out, as the report's overview and the heat
#'       map count and mark them;}
#'     \item{heat_map}{the layout of the study's heat map, drawn by [plot.tavrelle_study()].}
#'   }
#' @examples
#' demo <- system.file("extdata", "DemoNullAlleles.gen", package = "tavrelle")
#' result <- study(demo, motif = c(2, Tav131 = 3), seed = 12345, bootstrap = 100)
#' result
#' subset(result$loci, null_present, c(locus, velmaret, em, em_low, em_high))
#' @export
study <- function(x, motif, seed = NULL, randomisations = 1000, confidence = 95,
                  bootstrap = 1000, max_allele_size = 350, on_suspect = "proceed", threads = 2) {
  label <- if (is.character(x)) x else paste(deparse(substitute(x), nlines = 1L), collapse = "")
  settings <- study_settings(motif, seed, randomisations, confidence, bootstrap, max_allele_size,
                             on_suspect, threads)
  run_study(x, label, settings)
}

run_study <- function(x, label, settings, cancel_after = -1L) {
  input <- study_input(x, label)
  if (input$temporary) on.exit(unlink(input$path), add = TRUE)
  progress <- progress_reporter()
  on.exit(progress(close = TRUE), add = TRUE)
  raw <- .engine_study(
    input$path, "", input$label, input$populations, settings$motif, settings$seed,
    settings$randomisations, settings$confidence_code, settings$max_allele_size,
    settings$on_suspect, settings$threads, settings$bootstrap,
    system.file("tables", package = "tavrelle"), progress, as.integer(cancel_after)
  )
  settings$file <- input$label
  loci <- read_batch_csv(raw$csv)
  structure(
    list(
      loci = loci,
      populations = population_table(loci, raw$verdicts),
      settings = settings,
      locus_totals = as.data.frame(raw$locus_totals, stringsAsFactors = FALSE),
      heat_map = raw$heat_map
    ),
    html = raw$html, csv = raw$csv, complete = raw$complete,
    class = "tavrelle_study"
  )
}

# A row per population: the population's columns of the CSV table and the inbreeding verdict.
population_table <- function(loci, verdicts) {
  columns <- c("population", "population_name", "samples", "status", "stop_reason",
               "suspect_values", "suspect_action", "inbreeding_f", "inbreeding_f_low",
               "inbreeding_f_high", "inbreeding_model")
  populations <- loci[!duplicated(loci$population), columns, drop = FALSE]
  populations$inbreeding_verdict <- verdicts$verdict[match(populations$population,
                                                           verdicts$population)]
  rownames(populations) <- NULL
  populations
}

# The settings as the batch program's options take them, refused with the same ranges.
study_settings <- function(motif, seed, randomisations, confidence, bootstrap, max_allele_size,
                           on_suspect, threads) {
  if (missing(motif) || !is.numeric(motif) || length(motif) == 0L || anyNA(motif) ||
      any(motif != round(motif)) || any(motif < 1 | motif > 6))
    stop("motif: give the repeat motif, its length in bases from 1 to 6, as one number for ",
         "every locus or a vector named by locus.", call. = FALSE)
  if (is.null(seed)) seed <- sample.int(.Machine$integer.max, 1L) - 1L
  seed <- whole_number("seed", seed, 0, .Machine$integer.max)
  confidences <- c("95" = 0L, "99" = 1L, "100" = 2L, "bonferroni" = 3L)
  confidence_name <- tolower(as.character(confidence))
  if (length(confidence_name) != 1L || !confidence_name %in% names(confidences))
    stop("confidence: choose 95, 99, 100 or \"bonferroni\".", call. = FALSE)
  if (!is.character(on_suspect) || length(on_suspect) != 1L ||
      !on_suspect %in% c("proceed", "omit", "stop"))
    stop("on_suspect: choose \"proceed\", \"omit\" or \"stop\".", call. = FALSE)
  motif_codes <- as.integer(motif)
  names(motif_codes) <- names(motif) %||% rep("", length(motif))
  list(
    motif = motif_codes,
    seed = seed,
    randomisations = whole_number("randomisations", randomisations, 1000, 10000),
    confidence = confidence_name,
    confidence_code = confidences[[confidence_name]],
    bootstrap = whole_number("bootstrap", bootstrap, 0, 100000),
    max_allele_size = whole_number("max_allele_size", max_allele_size, 50, 700),
    on_suspect = on_suspect,
    threads = whole_number("threads", threads, 1, 256)
  )
}

whole_number <- function(name, value, low, high) {
  if (!is.numeric(value) || length(value) != 1L || is.na(value) || value != round(value) ||
      value < low || value > high)
    stop(name, ": give a whole number from ", format(low, scientific = FALSE), " to ",
         format(high, scientific = FALSE), ".", call. = FALSE)
  as.integer(value)
}

# The batch program's tidy CSV as a data frame: the same columns and names; texts as texts,
# yes/no columns logical, counts integer, every other column double, whichever rows a study has.
read_batch_csv <- function(text) {
  texts <- c("file", "population_name", "status", "stop_reason", "suspect_action", "locus",
             "combined_probability", "inbreeding_model")
  flags <- c("combined_significant", "homozygote_excess", "class_wide_excess",
             "one_repeat_deficit", "upper_class_excess", "lower_class_excess",
             "large_differences_scarce", "null_present")
  counts <- c("seed", "randomisations", "max_allele_size", "population", "samples",
              "suspect_values", "repeat", "lowest", "highest", "scored", "missing_genotypes")
  columns <- strsplit(sub("\n.*", "", text), ",", fixed = TRUE)[[1]]
  flags <- c(flags, grep("_borderline$", columns, value = TRUE))
  classes <- ifelse(columns %in% texts, "character",
                    ifelse(columns %in% flags, "logical",
                           ifelse(columns %in% counts, "integer", "numeric")))
  utils::read.csv(text = text, colClasses = classes, check.names = FALSE, na.strings = "",
                  stringsAsFactors = FALSE, encoding = "UTF-8")
}

# A line per population, or a progress bar in an interactive session.
progress_reporter <- function() {
  bar <- NULL
  function(done, total, number, name, analysed, close = FALSE) {
    if (close) {
      if (!is.null(bar)) close(bar)
      return(invisible())
    }
    if (interactive()) {
      if (is.null(bar)) bar <<- utils::txtProgressBar(min = 0, max = total, style = 3)
      utils::setTxtProgressBar(bar, done)
    } else {
      message(sprintf("Population %d of %d (%s): %s", done, total, name,
                      if (analysed) "analysed" else "stopped"))
    }
  }
}
