"""How often an interval of the mean, nominally of 95 %, holds the true mean of a simulated walk.

usage: simulate_coverage.py PRINT_MEASURES [PAGE]

PRINT_MEASURES is the program of that name in this folder, whose effective number of strides and
standard error are used. With a PAGE, fails unless that shows what is printed.

The interval is mean +- t * standard error, with the t quantile of as many degrees of freedom as
there are strides less one: once as if strides were independent, and once by the effective number of
strides. Every run draws the same series.
"""

import math
import pathlib
import subprocess
import sys

import numpy

SERIES = 2000
LENGTHS = [20, 100, 400]
LEVEL = 0.95


def resembling_the_last(random, n):
    """Each stride resembles the one before it alone: a first-order autoregression."""
    r = 0.38
    series = random.normal(size=(SERIES, n))
    for i in range(1, n):
        series[:, i] = r * series[:, i - 1] + math.sqrt(1.0 - r * r) * series[:, i]
    return series


def long_range(random, n, hurst):
    """Fractional Gaussian noise, by the Cholesky factor of its covariances."""
    lags = numpy.abs(numpy.subtract.outer(numpy.arange(n), numpy.arange(n))).astype(float)
    power = 2.0 * hurst
    covariances = ((lags + 1.0) ** power - 2.0 * lags**power + numpy.abs(lags - 1.0) ** power) / 2.0
    return random.normal(size=(SERIES, n)) @ numpy.linalg.cholesky(covariances).T


def half_long_range(random, n):
    """Half of the variance long-range correlated, half independent from stride to stride."""
    return math.sqrt(0.5) * (long_range(random, n, 0.8) + random.normal(size=(SERIES, n)))


MODELS = [
    ("AR(1), r = 0.38", resembling_the_last),
    ("fGn, H = 0.7", lambda random, n: long_range(random, n, 0.7)),
    ("fGn, H = 0.8", lambda random, n: long_range(random, n, 0.8)),
    ("half of it fGn, H = 0.8", half_long_range),
]


def probability_within(t, freedom):
    """Of Student's t distribution: the probability of a value from -t to t. The degrees of freedom
    need not be whole."""
    # With t = sqrt(freedom) * tan(angle), the density becomes a power of the cosine. The area below
    # it is taken by Simpson's rule.
    intervals = 200
    largest_angles = numpy.arctan(t / numpy.sqrt(freedom))
    angles = numpy.linspace(0.0, 1.0, intervals + 1) * largest_angles[:, None]
    weights = numpy.ones(intervals + 1)
    weights[1:-1:2] = 4.0
    weights[2:-1:2] = 2.0
    heights = numpy.cos(angles) ** (freedom - 1.0)[:, None]
    area = (heights @ weights) * angles[:, 1] / 3.0
    log_factor = [math.lgamma((f + 1.0) / 2.0) - math.lgamma(f / 2.0) for f in freedom]
    return 2.0 * numpy.exp(log_factor) / math.sqrt(math.pi) * area


def share_covered(means, standard_errors, strides):
    """How many of 100 intervals hold the true mean, which is 0."""
    within = probability_within(numpy.abs(means) / standard_errors, strides - 1.0)
    return 100.0 * numpy.mean(within <= LEVEL)


def measures_of(program, series):
    """The effective number of strides and the standard error of each series."""
    positions = ",".join(map(str, range(series.shape[1])))
    lines = "".join(f"{positions} {','.join(map(float.hex, row))} 1\n" for row in series.tolist())
    finished = subprocess.run(program, input=lines, capture_output=True, text=True, check=True)
    figures = [line.split()[4:6] for line in finished.stdout.splitlines()]
    return numpy.array([[float.fromhex(figure) for figure in row] for row in figures]).T


def simulated(program):
    """The lines of the table."""
    random = numpy.random.default_rng(95)
    yield f"{SERIES} series of each; share of intervals that hold the mean, nominally 95 %"
    yield ""
    yield f"{'':<24}{'':>8}{'as if':>13}{'by effective':>15}{'effective':>13}"
    yield f"{'series':<24}{'strides':>8}{'independent':>13}{'strides':>15}{'strides':>13}"
    for name, draw in MODELS:
        for n in LENGTHS:
            series = draw(random, n)
            effective, standard_errors = measures_of(program, series)
            means = series.mean(axis=1)
            plain_errors = series.std(axis=1, ddof=1) / math.sqrt(n)
            plain = share_covered(means, plain_errors, numpy.full(SERIES, float(n)))
            by_effective = share_covered(means, standard_errors, effective)
            yield (
                f"{name:<24}{n:>8}{plain:>11.0f} %{by_effective:>13.0f} %"
                f"{numpy.median(effective):>13.1f}"
            )


def main():
    program, *pages = sys.argv[1:]
    table = ""
    for line in simulated(program):
        print(line, flush=True)
        table += line + "\n"
    for page in pages:
        if table not in pathlib.Path(page).read_text(encoding="utf-8"):
            sys.exit(f"{page} shows another table")


main()
