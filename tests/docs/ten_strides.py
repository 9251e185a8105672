"""The quartiles of docs/definitions.md's ten strides by numpy: by the library's definition, and by
numpy's own."""

import numpy

CYCLE_DURATIONS = [1.08, 1.11, 1.05, 1.13, 1.09, 1.02, 1.10, 1.16, 1.07, 1.12]

for method, definition in (("hazen", 5), ("linear", 7)):
    q1, q3 = numpy.percentile(CYCLE_DURATIONS, [25, 75], method=method)
    name = f'method="{method}"'
    print(f"{name:<15} ({definition})  Q1 {q1:.4f}  Q3 {q3:.4f}  IQR {q3 - q1:.4f}")
