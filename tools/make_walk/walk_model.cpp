#include "walk_model.h"

#include "random_numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace gait_walk {

namespace {

enum class step_kind { straight, turn, outlier, start, stop };

struct step {
  step_kind kind = step_kind::straight;
  double turning = 0.0;  ///< 0 straight on, 1 in the middle of a turn
  double slowing = 0.0;  ///< 1 at the very start or stop
  int begin = 0;         ///< sample of the heel strike of one foot
  int end = 0;           ///< sample of the next heel strike of the other foot
  double length = 0.0;   ///< (m)
  bool lost = false;     ///< the stride that begins with this step was not found
};

/// Walking without standing still. A bout of n strides begins with the right foot's heel strike and
/// has 2 n + 1 steps: the right foot's stride i is made of steps 2 i and 2 i + 1, the left foot's
/// of steps 2 i + 1 and 2 i + 2.
struct bout {
  std::vector<step> steps;

  int strides() const { return static_cast<int>(steps.size() / 2); }
  step* stride(int number) { return &steps[2 * static_cast<std::size_t>(number)]; }
};

// A turn, the half-turned strides beside it, and straight ones on both sides.
constexpr int strides_around_turn = 6;
constexpr int strides_with_start_and_stop = 4;

/// Number `part` of `parts` nearly equal shares of `whole`.
int share_of(int whole, int part, int parts) {
  const auto until = [&](int p) { return static_cast<int>(std::int64_t{whole} * p / parts); };
  return until(part + 1) - until(part);
}

int fewest_strides(const walk_settings& settings) {
  const std::int64_t bouts = std::int64_t{settings.pauses} + 1;
  const std::int64_t turns_of_bout = (settings.turns + bouts - 1) / bouts;
  const std::int64_t strides_of_bout = strides_around_turn * (turns_of_bout + 1);
  return bouts == 1 && settings.turns == 0 ? 1 : static_cast<int>(bouts * strides_of_bout);
}

void require(bool condition, const std::string& otherwise) {
  if (!condition) {
    throw std::invalid_argument(otherwise);
  }
}

void check(const walk_settings& settings) {
  constexpr int most_strides = 1'000'000;
  require(settings.strides >= 1 && settings.strides <= most_strides,
          "the number of strides must be from 1 to 1000000");
  require(settings.rate >= 50 && settings.rate <= 1000,
          "the sampling rate must be from 50 to 1000 Hz");
  require(settings.missing >= 0.0 && settings.missing <= 1.0,
          "the share of missing values must be from 0 to 1");
  for (const int count : {settings.turns, settings.pauses, settings.outliers, settings.lost}) {
    require(count >= 0 && count <= most_strides,
            "turns, pauses, outliers and lost strides must be from 0 to 1000000");
  }
  require(settings.strides >= fewest_strides(settings),
          "that many turns and pauses need at least " + std::to_string(fewest_strides(settings)) +
              " strides");
  require(settings.outliers + settings.lost <= settings.strides / 10,
          "outliers and lost strides together must be at most a tenth of the strides");
}

void plan_turn(bout& bout, int middle_stride) {
  step* step = bout.stride(middle_stride - 1);
  for (const double turning : typical::turn_shape) {
    step->kind = step_kind::turn;
    step->turning = turning;
    ++step;
  }
}

void plan_start_and_stop(bout& bout) {
  double slowing = 1.0;
  for (const std::size_t from_end : {0U, 1U}) {
    step& first = bout.steps[from_end];
    step& last = bout.steps[bout.steps.size() - 1 - from_end];
    first.kind = step_kind::start;
    last.kind = step_kind::stop;
    first.slowing = slowing;
    last.slowing = slowing;
    slowing /= 2.0;
  }
}

bout planned_bout(int strides, int turns) {
  bout bout;
  bout.steps.resize(2 * static_cast<std::size_t>(strides) + 1);
  for (int turn = 0; turn < turns; ++turn) {
    plan_turn(bout, static_cast<int>(std::int64_t{turn + 1} * strides / (turns + 1)));
  }
  if (strides >= strides_with_start_and_stop) {
    plan_start_and_stop(bout);
  }
  return bout;
}

std::vector<bout> planned_bouts(const walk_settings& settings) {
  const int count = settings.pauses + 1;
  std::vector<bout> bouts;
  bouts.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    bouts.push_back(
        planned_bout(share_of(settings.strides, i, count), share_of(settings.turns, i, count)));
  }
  return bouts;
}

/// Whether the strides of both feet that begin here are like any other.
bool is_straight(const step* stride) {
  return std::all_of(stride, stride + 3, [](const step& step) {
    return step.kind == step_kind::straight && !step.lost;
  });
}

/// Any straight stride that is not at the end of a bout.
///
/// There always is one: turns, starts and stops leave more than the tenth of the strides that is
/// asked for.
step* any_straight_stride(std::vector<bout>& bouts, random_numbers& random) {
  while (true) {
    bout& bout = bouts[static_cast<std::size_t>(random.below(static_cast<int>(bouts.size())))];
    const int number = random.below(bout.strides());
    step* const stride = bout.stride(number);
    if (number > 0 && number + 1 < bout.strides() && is_straight(stride)) {
      return stride;
    }
  }
}

void plan_outliers(std::vector<bout>& bouts, int count, random_numbers& random) {
  for (int i = 0; i < count; ++i) {
    any_straight_stride(bouts, random)[1].kind = step_kind::outlier;
  }
}

void plan_lost_strides(std::vector<bout>& bouts, int count, random_numbers& random) {
  for (int i = 0; i < count; ++i) {
    const int left_then_right = i % 2 == 0 ? 1 : 0;
    any_straight_stride(bouts, random)[left_then_right].lost = true;
  }
}

/// By how much a start, stop or stumble stretches or shortens a step.
double factor(const step& step, double typical::slowed_step::*what) {
  if (step.kind == step_kind::outlier) {
    return typical::stumble.*what;
  }
  return 1.0 + step.slowing * (typical::start_or_stop.*what - 1.0);
}

double mean_of(const typical_value& value, side side, double turning) {
  const double difference = side == side::left ? value.left_less_right : -value.left_less_right;
  return value.mean + turning * (value.in_turn - value.mean) + difference / 2.0;
}

/// Gives every step its duration and length. Times are summed up unrounded, so that samples do not
/// drift away.
void walk_steps(std::vector<bout>& bouts, int rate, random_numbers& random) {
  long_memory_series durations(random);
  long_memory_series lengths(random);
  const double r = typical::step_time_length_correlation;
  double time = 0.0;
  const auto sample = [&] { return static_cast<int>(std::lround(time * rate)); };
  for (bout& bout : bouts) {
    time += typical::standing;
    side side = side::left;
    for (step& step : bout.steps) {
      const double z = durations.next();
      const double z_length = r * z + std::sqrt(1.0 - r * r) * lengths.next();
      const double duration =
          mean_of(typical::step_time, side, step.turning) + z * typical::step_time.deviation;
      const double length = mean_of(typical::step_length, side, step.turning) +
                            z_length * typical::step_length.deviation;
      step.begin = sample();
      time += duration * factor(step, &typical::slowed_step::time);
      step.end = sample();
      step.length = length * factor(step, &typical::slowed_step::length);
      side = side == side::left ? side::right : side::left;
    }
  }
}

/// Rounded as in an export. Never the missing value, which is a plausible turning angle, but its
/// neighbour.
double rounded(double value, int decimals) {
  double scale = 1.0;
  for (int i = 0; i < decimals; ++i) {
    scale *= 10.0;
  }
  const double whole = std::round(value * scale);
  const double result = whole / scale + 0.0;  // -0.0 becomes 0.0
  return result == gait_missing ? (whole + 1.0) / scale : result;
}

struct stride {
  gait_foot_cycle cycle;
  int toe_off = 0;  ///< sample
};

/// The step to a heel strike: the one that ends there, from the other foot's. There is none where a
/// bout begins, and none is measured from a strike that was not found.
void measure_step(gait_foot_cycle& cycle, const step* before, int rate) {
  if (before == nullptr || before->lost) {
    return;
  }
  cycle.step_time =
      rounded(static_cast<double>(before->end - before->begin) / rate, typical::step_time.decimals);
  cycle.step_length = rounded(before->length, typical::step_length.decimals);
}

/// The stride of two steps, after the step `before` (null where there is none).
stride make_stride(const step* before, const step& first, const step& second, side side, int rate,
                   random_numbers& random) {
  const double turning = (first.turning + second.turning) / 2.0;
  const auto drawn = [&](const typical_value& value) {
    return rounded(mean_of(value, side, turning) + value.deviation * random.normal(),
                   value.decimals);
  };
  const auto seconds = [&](int samples) { return static_cast<double>(samples) / rate; };
  const int samples = second.end - first.begin;
  const int contact = static_cast<int>(std::lround(drawn(typical::stance) / 100.0 * samples));
  const double length = first.length + second.length;

  stride stride;
  stride.toe_off = first.begin + contact;
  gait_foot_cycle& cycle = stride.cycle;
  cycle.first_sample = first.begin;
  cycle.last_sample = second.end - 1;
  cycle.hs = rounded(seconds(first.begin), 4);
  cycle.gct = rounded(seconds(samples), 4);
  cycle.stance = rounded(100.0 * contact / samples, typical::stance.decimals);
  cycle.swing = rounded(100.0 - cycle.stance, typical::stance.decimals);
  cycle.contact = rounded(1000.0 * seconds(contact), 1);
  cycle.cadence = rounded(120.0 / seconds(samples), 3);
  cycle.slength = rounded(length, typical::step_length.decimals);
  cycle.speed = rounded(length / seconds(samples), 4);
  measure_step(cycle, before, rate);
  for (const typical_value& value : typical::stride_values) {
    cycle.*value.field = drawn(value);
  }
  cycle.ffr = rounded(100.0 - cycle.ldr - cycle.pur, 3);
  return stride;
}

/// Collects the tables of a walk of both feet, stride by stride.
class walk_maker {
public:
  walk_maker(int rate, random_numbers& random) : rate_(rate), random_(random) {
    walk_.left.emplace();
    walk_.right.emplace();
  }

  void add(bout& bout) {
    left_toe_off_.reset();
    for (int i = 0; i < bout.strides(); ++i) {
      const step* const steps = bout.stride(i);
      add_stride(i == 0 ? nullptr : steps - 1, steps);
    }
  }

  walk finish(int last_sample) {
    const auto samples =
        static_cast<std::uint64_t>(last_sample + std::lround(typical::standing * rate_));
    for (foot* foot : {&*walk_.left, &*walk_.right}) {
      foot->sampling_rate = rate_;
      foot->signal_1_samples = samples;
      foot->signal_2_samples = samples;
    }
    for (const std::vector<exclusion>& exclusions : exclusions_) {
      walk_.exclusions.insert(walk_.exclusions.end(), exclusions.begin(), exclusions.end());
    }
    return std::move(walk_);
  }

private:
  /// The right foot's stride of the first two of three steps, and the left foot's of the last two.
  void add_stride(const step* before, const step* steps) {
    const stride right = make_stride(before, steps[0], steps[1], side::right, rate_, random_);
    const stride left = make_stride(steps, steps[1], steps[2], side::left, rate_, random_);
    const bool has_lost = steps[0].lost || steps[1].lost;

    feet_cycle feet;
    feet.gct = (steps[0].lost ? left : right).cycle.gct;
    feet.ds = has_lost ? gait_missing : double_support(right, steps[1]);
    feet.right_index = add_foot(*walk_.right, analysed_cycles::right, right, steps);
    feet.left_index = add_foot(*walk_.left, analysed_cycles::left, left, steps + 1);
    exclude(analysed_cycles::feet, walk_.feet.size(), steps, steps + 3);
    walk_.feet.push_back(feet);

    left_toe_off_ = steps[1].lost ? std::nullopt : std::optional(left.toe_off);
  }

  std::optional<int> add_foot(foot& foot, analysed_cycles cycles, const stride& stride,
                              const step* steps) {
    if (steps->lost) {
      return std::nullopt;
    }
    const std::size_t index = foot.cycles.size();
    foot.cycles.push_back(stride.cycle);
    foot.cycles.back().index = static_cast<int>(index);
    exclude(cycles, index, steps, steps + 2);
    return static_cast<int>(index);
  }

  /// From the right heel strike to the left toe-off, and from the left heel strike to the right
  /// toe-off.
  double double_support(const stride& right, const step& left_step) const {
    if (!left_toe_off_) {
      return gait_missing;
    }
    const int begin = right.cycle.first_sample;
    const int samples = right.cycle.last_sample + 1 - begin;
    const int both = (*left_toe_off_ - begin) + (right.toe_off - left_step.begin);
    return rounded(100.0 * both / samples, typical::stance.decimals);
  }

  /// A cycle is excluded for what any of its steps is.
  void exclude(analysed_cycles cycles, std::size_t index, const step* begin, const step* end) {
    const auto where = [&](step_kind kind, exclusion_list list, const char* reason) {
      if (std::any_of(begin, end, [&](const step& step) { return step.kind == kind; })) {
        exclusions_[static_cast<std::size_t>(cycles)].push_back(
            {cycles, list, static_cast<int>(index), reason});
      }
    };
    where(step_kind::turn, exclusion_list::excluded_1, "turn");
    where(step_kind::outlier, exclusion_list::excluded_1, "outlier");
    where(step_kind::start, exclusion_list::excluded_2, "start");
    where(step_kind::stop, exclusion_list::excluded_2, "stop");
  }

  int rate_;
  random_numbers& random_;
  walk walk_;
  std::array<std::vector<exclusion>, 3> exclusions_;  ///< by analysed_cycles
  /// Sample of the one before, where it was found.
  std::optional<int> left_toe_off_;
};

void take_off(walk& walk, std::optional<foot>& unworn, analysed_cycles worn) {
  unworn.reset();
  walk.feet.clear();
  const auto is_other = [&](const exclusion& exclusion) { return exclusion.cycles != worn; };
  walk.exclusions.erase(std::remove_if(walk.exclusions.begin(), walk.exclusions.end(), is_other),
                        walk.exclusions.end());
  for (gait_foot_cycle& cycle : (worn == analysed_cycles::left ? walk.left : walk.right)->cycles) {
    cycle.step_time = gait_missing;
    cycle.step_length = gait_missing;
  }
}

/// What a sensor always measures are the heel strikes, and with them the cycle durations.
constexpr std::array lost_by_sensors = {
    &gait_foot_cycle::swing,       &gait_foot_cycle::stance,     &gait_foot_cycle::contact,
    &gait_foot_cycle::ldr,         &gait_foot_cycle::ffr,        &gait_foot_cycle::pur,
    &gait_foot_cycle::slength,     &gait_foot_cycle::swidth,     &gait_foot_cycle::path_length,
    &gait_foot_cycle::speed,       &gait_foot_cycle::ta,         &gait_foot_cycle::peakswing,
    &gait_foot_cycle::top,         &gait_foot_cycle::hsp,        &gait_foot_cycle::step_time,
    &gait_foot_cycle::step_length, &gait_foot_cycle::max_hc,     &gait_foot_cycle::min_tc,
    &gait_foot_cycle::max_tc1,     &gait_foot_cycle::max_tc2,    &gait_foot_cycle::mtc_speed,
    &gait_foot_cycle::impact_vert, &gait_foot_cycle::impact_hor, &gait_foot_cycle::strike_eversion,
};

/// The last to draw random numbers, so that the values that are left do not depend on the share.
void lose_values(walk& walk, double share, random_numbers& random) {
  const auto lose = [&](double& value) { value = random.uniform() < share ? gait_missing : value; };
  for (std::optional<foot>* foot : {&walk.left, &walk.right}) {
    for (gait_foot_cycle& cycle : (*foot)->cycles) {
      for (double gait_foot_cycle::*field : lost_by_sensors) {
        lose(cycle.*field);
      }
    }
  }
  for (feet_cycle& cycle : walk.feet) {
    lose(cycle.ds);
  }
}

}  // namespace

walk make_walk(const walk_settings& settings) {
  check(settings);
  random_numbers random(settings.seed);
  std::vector<bout> bouts = planned_bouts(settings);
  plan_outliers(bouts, settings.outliers, random);
  plan_lost_strides(bouts, settings.lost, random);
  walk_steps(bouts, settings.rate, random);

  walk_maker maker(settings.rate, random);
  for (bout& bout : bouts) {
    maker.add(bout);
  }
  walk walk = maker.finish(bouts.back().steps.back().end);
  walk.name = settings.name;
  lose_values(walk, settings.missing, random);
  if (settings.feet == worn_on::left) {
    take_off(walk, walk.right, analysed_cycles::left);
  }
  if (settings.feet == worn_on::right) {
    take_off(walk, walk.left, analysed_cycles::right);
  }
  return walk;
}

}  // namespace gait_walk
