# R: aggregate, with the quantile definition that the library has (type 5).

folder <- commandArgs(trailingOnly = TRUE)[1]
strides <- read.csv(file.path(folder, "foot_cycles.csv"))
strides <- strides[, !(names(strides) %in% c("index", "first_sample", "last_sample"))]
feet <- read.csv(file.path(folder, "feet_cycles.csv"))

describe <- function(values) {
  values <- values[!is.na(values)]
  quartiles <- quantile(values, c(0.25, 0.75), type = 5, names = FALSE)
  c(n = length(values), mean = mean(values), median = median(values), std = sd(values), iqr = quartiles[2] - quartiles[1],
    min = min(values), max = max(values), cv = 100 * sd(values) / mean(values))
}

pass <- function() {
  aggregate(strides[-1], by = list(foot = strides$foot), FUN = describe)
  describe(feet$ds)
}

times <- c()
end <- proc.time()[["elapsed"]] + 0.2
while (proc.time()[["elapsed"]] < end || length(times) < 3) {
  start <- Sys.time()
  pass()
  times <- c(times, as.numeric(difftime(Sys.time(), start, units = "secs")))
}
cat(sprintf("%.9f\n", median(times)))
