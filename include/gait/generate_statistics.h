#ifndef GAIT_GENERATE_STATISTICS_H
#define GAIT_GENERATE_STATISTICS_H

/// \file
/// The library's entry, and its whole contract: what most callers include.

#include <gait/quality_flags.h>
#include <gait/result.h>

#if defined(__GNUC__)
/// Marks what the shared library exports; everything else in it is hidden.
#define GAIT_STATISTICS_EXPORT __attribute__((visibility("default")))
#else
#define GAIT_STATISTICS_EXPORT
#endif

/// Computes the statistics of a walk, and writes them into the same object. Returns true.
///
/// Mode. `foot_results` decides: empty, and nothing is touched; exactly one entry, and that foot is
/// analysed alone; more, and the two feet are analysed together through `left_foot`, `right_foot`
/// and `feet_result` (the entries themselves are then read for the sampling rate only, and only the
/// first of them).
///
/// Course. All cycles of the analysed list, less those in `excluded_1` and then in `excluded_2`,
/// are the included cycles. The walk is accounted for, the parameters of every side are computed
/// over the included cycles, and the sides are compared.
///
/// Written:
/// - `statistics.info`: every field;
/// - `statistics.parameters`: those of the catalogue. One foot: keys without suffix, no "DS", step
///   length taken as half the stride length. Two feet: first the right side ("gct_R"), then the
///   left ("gct_L"), with "DS" the same under both. The map is not cleared, and an entry that is
///   present is kept: start with an empty one;
/// - two feet: `asymmetry` of every pair of entries, those that were kept too: in the right one the
///   right mean / the left mean, in the left one its reciprocal, and 0.0 for a quotient by a mean
///   of 0.0;
/// - two feet: "asymmetry", the swing asymmetry (left - right) * sampling rate / (left + right) of
///   every included stride whose swings are both above 0, with their mean and deviation. Here the
///   deviation of a single value is NaN, -1.0 is a value like any other, and where no stride has
///   both swings, the record is valid, its mean NaN and its deviation -0.0. Without any included
///   cycle it is not valid, and both are 0.0;
/// - `quality_flags`: rewritten, a set of gait_quality_flag bits.
/// Nothing else is changed. Both distances are the right foot's in two-feet mode: the stride
/// lengths of the right-foot cycles that the two-feet cycles point to.
///
/// Missing values. A field that holds gait_missing, an index out of range and a null link are left
/// out, and show as gait_missing in `values`. NaN counts as measured. A missing stride length is
/// halved like any other in single-foot mode, and enters "StepLength" as -0.5.
///
/// Required, and not tested: `foot_results[0].recording` not null and its sampling rate not 0
/// (durations are infinite or NaN otherwise, and the swing asymmetry of finite swings is 0); one
/// foot: its cycle list not empty; two feet: `left_foot` and `right_foot`, and the recording of
/// each, not null, and both cycle lists not empty. The link of a two-feet cycle stands for the
/// cycle at the `index` of the one that it points to: set `index` to the position in the foot's
/// list. Samples and indices are 32 bits wide, and their differences wrap around as in two's
/// complement.
///
/// Throws std::out_of_range ("unordered_map::at: key not found") when signal 1 or 2 is absent from
/// the recording of an analysed foot; nothing is written then. Throws std::bad_alloc, or the
/// containers' std::length_error, when memory runs out. The output may then be written in part:
/// `info` is the old or the new one, an entry that is there is complete but for its `asymmetry`,
/// and `quality_flags` may be old, new or without its last bit.
///
/// Cost. Every index is reached by a walk from the front of its list: O(n * k) steps for k indices
/// over n cycles, once for each parameter and sum; taking out m excluded indices is O(n * m).
/// Memory is O(n) beside the results; none is kept after the call.
///
/// Threads. The call runs on the caller's thread and has no global state. Calls on different
/// objects may run at the same time, also when their pointers reach the same recordings and foot
/// cycles, which are only read. One gait_result must not be used by another thread during its call.
GAIT_STATISTICS_EXPORT bool gait_generate_statistics(
    gait_result& result, const gait_generate_statistics_settings& settings);

#endif
