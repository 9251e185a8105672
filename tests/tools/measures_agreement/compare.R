# Compares quartiles, percentiles and the effective number of strides of random walks without gaps
# with R's: quantile() of type 5, and the initial positive sequence of the package mcmc, which is by
# the author of that method (Debian: r-cran-mcmc).
#
# usage: Rscript compare.R PRINT_MEASURES

if (!requireNamespace("mcmc", quietly = TRUE)) {
  cat("skipped: R has no package mcmc\n")
  quit(status = 77)
}

walks <- 500
relative_tolerance <- 1e-10

# Strides that resemble those before them, or are by chance the reverse of them.
random_walk <- function() {
  n <- sample(20:200, 1)
  r <- sample(c(-0.6, 0, 0.4, 0.9), 1)
  1.1 + 0.05 * as.numeric(stats::filter(rnorm(n), r, method = "recursive"))
}

expected_of <- function(x) {
  sequence <- mcmc::initseq(x)
  # Of strides that alternate, mcmc's variance may be 0 or less.
  effective <- if (sequence$var.pos > 0) length(x) * sequence$gamma0 / sequence$var.pos else Inf
  effective <- min(effective, length(x))
  c(quantile(x, c(0.25, 0.75, 0.05, 0.95), type = 5, names = FALSE), effective,
    sd(x) / sqrt(effective))
}

set.seed(38)
samples <- replicate(walks, random_walk(), simplify = FALSE)
lines <- vapply(samples, function(x) {
  paste(paste(seq_along(x), collapse = ","), paste(sprintf("%a", x), collapse = ","), "1")
}, "")
printed <- system2(commandArgs(trailingOnly = TRUE)[1], stdout = TRUE, input = lines)
stopifnot(length(printed) == walks)

disagreements <- 0
alternating <- 0
for (i in seq_len(walks)) {
  got <- as.numeric(strsplit(printed[i], " ")[[1]][1:6])
  expected <- expected_of(samples[[i]])
  alternating <- alternating + (expected[5] == length(samples[[i]]))
  if (any(is.na(got)) || any(abs(got - expected) > relative_tolerance * pmax(1, abs(expected)))) {
    disagreements <- disagreements + 1
    cat("walk", i, "\n ours", got, "\n R   ", expected, "\n")
  }
}
cat(walks, "walks compared with R", as.character(getRversion()), "and mcmc",
    as.character(packageVersion("mcmc")), "-", alternating, "of them at the limit,",
    disagreements, "disagree\n")
quit(status = if (disagreements > 0) 1 else 0)
