#' Write a study's HTML report
#'
#' Writes the study report of `tavrelle-batch --report`: one self-contained HTML page with the
#' settings and seed, the overview table and heat map, and for every population and locus the
#' graphs, the probabilities, the verdicts and the estimates.
#'
#' @param result A study, as [study()] returns it.
#' @param file Where to write the page.
#' @return `file`, invisibly.
#' @examples
#' demo <- system.file("extdata", "DemoNullAlleles.gen", package = "tavrelle")
#' result <- study(demo, motif = 2, seed = 1, bootstrap = 0)
#' page <- report(result, tempfile(fileext = ".html"))
#' @export
report <- function(result, file) {
  if (!inherits(result, "tavrelle_study")) stop("result: give what study() returned.",
                                                call. = FALSE)
  if (!is.character(file) || length(file) != 1L || is.na(file))
    stop("file: give the name of one file.", call. = FALSE)
  connection <- file(file, open = "wb")
  on.exit(close(connection))
  writeBin(charToRaw(attr(result, "html")), connection)
  invisible(file)
}

#' @export
as.data.frame.tavrelle_study <- function(x, ...) {
  x$loci
}

#' @export
print.tavrelle_study <- function(x, ...) {
  s <- x$settings
  p <- x$populations
  cat("Tavrelle study of ", s$file, "\n", sep = "")
  cat("  seed ", s$seed, ", ", s$randomisations, " randomisations, confidence ", s$confidence,
      ", bootstrap ", s$bootstrap, "\n", sep = "")
  cat("  ", nrow(p), " population(s): ", sum(p$status == "analysed"), " analysed, ",
      sum(p$status != "analysed"), " stopped\n", sep = "")
  flagged <- x$loci[!is.na(x$loci$null_present) & x$loci$null_present, , drop = FALSE]
  cat("  null alleles at ", nrow(flagged), " of ", sum(!is.na(x$loci$locus)),
      " population-locus pairs\n", sep = "")
  if (nrow(flagged) > 0L) {
    shown <- flagged[seq_len(min(10L, nrow(flagged))),
                     c("population_name", "locus", "velmaret", "em"), drop = FALSE]
    rownames(shown) <- NULL
    print(shown, digits = 3)
    if (nrow(flagged) > 10L) cat("  ... and ", nrow(flagged) - 10L, " more\n", sep = "")
  }
  invisible(x)
}

#' Summarise a study by locus
#'
#' @param object A study, as [study()] returns it.
#' @param ... Not used.
#' @return A data frame with one row per locus: in how many populations it was analysed and
#'   showed a null allele, stutter or large allele drop-out (the N, S and D of the heat map), and
#'   the median over populations of its maximum likelihood null allele frequency (`em`).
#' @export
summary.tavrelle_study <- function(object, ...) {
  loci <- object$loci[!is.na(object$loci$em), , drop = FALSE]
  median_em <- vapply(split(loci$em, loci$locus), stats::median, numeric(1))
  totals <- object$locus_totals
  totals$median_em <- unname(median_em[totals$locus])
  structure(totals, class = c("summary.tavrelle_study", "data.frame"))
}

#' @export
print.summary.tavrelle_study <- function(x, ...) {
  cat("Loci across populations\n")
  print(structure(x, class = "data.frame"), digits = 3, row.names = FALSE)
  invisible(x)
}

#' Draw a study's heat map
#'
#' The heat map of the study report, in base graphics: populations down, loci across, each cell
#' coloured by the null allele frequency the legend names (`em_failure`, which tells failed
#' amplifications from null alleles) and marked N (null allele), S (stutter), D (large allele
#' drop-out), ~ (a borderline verdict) and a dagger (more than a fifth of the samples blank);
#' populations that stopped are hatched.
#'
#' @param x A study, as [study()] returns it.
#' @param ... Not used.
#' @return `x`, invisibly.
#' @export
plot.tavrelle_study <- function(x, ...) {
  map <- x$heat_map
  old <- graphics::par(mar = c(0, 0, 0, 0))
  on.exit(graphics::par(old))
  graphics::plot.new()
  graphics::plot.window(xlim = c(0, map$width), ylim = c(map$height, 0), xaxs = "i",
                        yaxs = "i", asp = 1)
  b <- map$boxes
  if (length(b$x) > 0L) {
    graphics::rect(b$x, b$y, b$x + b$width, b$y + b$height, col = b$fill, border = NA)
    hatched <- which(b$hatched)
    if (length(hatched) > 0L)
      graphics::rect(b$x[hatched], b$y[hatched], b$x[hatched] + b$width[hatched],
                     b$y[hatched] + b$height[hatched], density = 12, col = "grey45",
                     border = NA)
  }
  t <- map$texts
  if (length(t$x) > 0L) {
    # The layout is in points: one point of it is this many user units of the device's.
    points_per_unit <- graphics::par("pin")[1] * 72 /
      diff(graphics::par("usr")[1:2])
    cex <- t$size * points_per_unit / graphics::par("ps")
    adj <- c(start = 0, middle = 0.5, end = 1)[t$anchor]
    for (i in seq_along(t$x))
      graphics::text(t$x[i], t$y[i], t$text[i], adj = c(adj[[i]], 0), cex = cex[i],
                     srt = if (t$vertical[i]) 90 else 0, font = if (t$bold[i]) 2 else 1,
                     col = t$colour[i], xpd = TRUE)
  }
  invisible(x)
}
