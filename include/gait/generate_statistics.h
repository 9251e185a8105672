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
/// Mode. The number of entries in `foot_results` decides. With none, nothing is touched. With
/// exactly one, that foot is analysed alone. With more, the two feet are analysed together through
/// `left_foot`, `right_foot` and `feet_result`; of the entries themselves only the first is then
/// read, for its sampling rate.
///
/// What happens. The included cycles are all cycles of the analysed list, without those in
/// `excluded_1` and then without those in `excluded_2`. The walk is accounted for, the parameters
/// of every side are computed over the included cycles, and the sides are compared.
///
/// Written:
/// - `statistics.info`: every field.
/// - `statistics.parameters`: those of the catalogue. With one foot, keys have no suffix, there is
///   no "DS", and the step length is half the stride length. With two feet, the right side comes
///   first ("gct_R"), then the left ("gct_L"), with "DS" the same under both. The map is not
///   cleared, and an entry that is present is kept: start with an empty map.
/// - `asymmetry`, with two feet: in every pair of entries, those that were kept too. The right one
///   gets the right mean / the left mean, the left one its reciprocal, and 0.0 stands for a
///   quotient by a mean of 0.0.
/// - "asymmetry", with two feet: the swing asymmetry (left - right) * sampling rate / (left +
///   right) of every included stride whose swings are both above 0, with the mean and the
///   deviation. Here the deviation of a single value is NaN, and -1.0 is a value like any other.
///   Where no stride has both swings, the record is valid, its mean NaN and its deviation -0.0.
///   Without any included cycle it is not valid, and both are 0.0.
/// - `quality_flags`: rewritten, a set of gait_quality_flag bits.
///
/// Nothing else is changed. In two-feet mode both distances are the right foot's: the stride
/// lengths of the right-foot cycles that the two-feet cycles point to.
///
/// Missing values. A field that holds gait_missing, an index out of range and a null link are left
/// out, and show as gait_missing in `values`. NaN counts as measured. In single-foot mode a missing
/// stride length is halved like any other, and enters "StepLength" as -0.5.
///
/// Required, and not tested:
/// - `foot_results[0].recording` is not null, and its sampling rate is not 0. Durations would be
///   infinite or NaN otherwise, and the swing asymmetry of finite swings 0.
/// - With one foot, its cycle list is not empty.
/// - With two feet, `left_foot`, `right_foot` and the recording of each are not null, and both
///   cycle lists are not empty. The link of a two-feet cycle stands for the cycle at the `index` of
///   the one that it points to: set `index` to the position in the foot's list.
///
/// Samples and indices are 32 bits wide, and their differences wrap around as in two's complement.
///
/// Throws std::out_of_range ("unordered_map::at: key not found") when signal 1 or 2 is absent from
/// the recording of an analysed foot; nothing is written then. Throws std::bad_alloc, or the
/// containers' std::length_error, when memory runs out. The output may then be written in part:
/// `info` is the old or the new one, an entry that is there is complete but for its `asymmetry`,
/// and `quality_flags` may be old, new or without its last bit.
///
/// Cost. Every index is reached afresh from the front of its list: O(n * k) for k indices over n
/// cycles, once for each parameter and sum. Taking out m excluded indices is O(n * m). Memory is
/// O(n) in addition to the results; none is kept after the call.
///
/// Threads. The call runs on the caller's thread and has no global state. Calls on different
/// objects may run at the same time, also when their pointers reach the same recordings and foot
/// cycles, which are only read. No other thread may use a gait_result during its call.
GAIT_STATISTICS_EXPORT bool gait_generate_statistics(
    gait_result& result, const gait_generate_statistics_settings& settings);

#endif
