"""Tables in the forms that people have, made of one walk whose values are known."""

from __future__ import annotations

import numpy as np
import pandas as pd


def strides_of_both_feet(count: int = 12, seed: int = 0, rate: int = 100) -> pd.DataFrame:
    """A walk that breaks no data check, in our units; strikes and lift-offs are whole samples."""
    rng = np.random.default_rng(seed)
    feet = {}
    for foot, begin in (("left", 50), ("right", 102)):
        # Both feet keep the same pace, so that they stay in step.
        first = begin + np.arange(count) * 105 + rng.integers(-2, 3, count)
        last = np.append(first[1:], first[-1] + 105) - 1
        gct = (last - first + 1) / rate
        contact = rng.integers(63, 67, count) / rate
        speed = rng.uniform(1.1, 1.3, count).round(3)
        feet[foot] = pd.DataFrame(
            {
                "foot": foot,
                "first_sample": first,
                "last_sample": last,
                "hs": first / rate,
                "end": (last + 1) / rate,
                "lift_off": first / rate + contact,
                "gct": gct,
                "stance": 100 * contact / gct,
                "swing": 100 - 100 * contact / gct,
                "contact": 1000 * contact,
                "cadence": 120 / gct,
                "speed": speed,
                "slength": speed * gct,
                "hsp": rng.uniform(20, 30, count).round(2),
            }
        )
    return pd.concat(feet.values(), ignore_index=True)


def in_time_order(strides: pd.DataFrame) -> pd.DataFrame:
    """Strides of both feet one after the other."""
    return strides.sort_values("first_sample", kind="stable").reset_index(drop=True)
