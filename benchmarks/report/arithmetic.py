"""What becomes of repeated measurements."""

import math
import statistics

median = statistics.median


def spread(samples):
    """How far half of the samples lie around their median, as a share of it: 0 where there is but one."""
    if len(samples) < 2:
        return 0.0
    lower, _, upper = statistics.quantiles(samples, n=4, method="inclusive")
    return (upper - lower) / median(samples)


def exponent(points):
    """The exponent e of the power law time = c * size ** e that fits the (size, time) points best, in logarithms."""
    sizes = [math.log(size) for size, _ in points]
    times = [math.log(time) for _, time in points]
    return statistics.linear_regression(sizes, times).slope
