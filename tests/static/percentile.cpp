// The types that `percentile` takes and returns, and the types of the functions that callers name.

#include <gait/gait.h>

#include <cstdint>
#include <list>
#include <string>
#include <type_traits>
#include <utility>

namespace {

using one_percentage = Eigen::Array<double, 1, 1>;
using constant_request =
    Eigen::CwiseNullaryOp<Eigen::internal::scalar_constant_op<double>, one_percentage>;

template <class Receiver, class Request>
using trait = typename Eigen::DenseBase<Receiver>::template precentile_return_type<Request>::type;

template <class Receiver, class Request>
using returned = decltype(std::declval<const Eigen::DenseBase<Receiver>&>().percentile(
    std::declval<const Eigen::DenseBase<Request>&>()));

template <class Receiver, class Request, class Result>
constexpr bool gives = std::is_same_v<trait<Receiver, Request>, Result>&&
    std::is_same_v<returned<Receiver, Request>, Result>;

static_assert(gives<Eigen::VectorXd, Eigen::Array<double, 2, 1>, Eigen::Array<double, 2, 1>>);
static_assert(gives<Eigen::VectorXd, constant_request, Eigen::Array<double, 1, 1>>);
static_assert(gives<Eigen::VectorXd, Eigen::VectorXd, Eigen::Array<double, Eigen::Dynamic, 1>>);
static_assert(gives<Eigen::VectorXd, Eigen::RowVector3d, Eigen::Array<double, 1, 3>>);
static_assert(gives<Eigen::ArrayXd, Eigen::Array2d, Eigen::Array2d>);
static_assert(gives<Eigen::RowVectorXd, Eigen::Array2d, Eigen::Array2d>);
static_assert(gives<Eigen::VectorXf, Eigen::Array2d, Eigen::Array2f>);
static_assert(gives<Eigen::VectorXf, constant_request, Eigen::Array<float, 1, 1>>);

// What a one-percentage request is when it is written down.
static_assert(
    std::is_same_v<std::decay_t<decltype(one_percentage::Constant(50.0))>, constant_request>);

static_assert(std::is_same_v<decltype(&_kalvio_eigen_quicksort<double, std::int64_t>),
                             void (*)(double*, std::int64_t, std::int64_t)>);

template <class ResultT, class Tag>
constexpr bool is_built_from =
    std::is_same_v<decltype(&gait_statistics_build_parameter<ResultT, Tag>),
                   void (*)(gait_statistics&, const ResultT&, const std::list<int>&,
                            const std::string&, Tag)>;
static_assert(is_built_from<gait_foot_result, GCT>);
static_assert(is_built_from<gait_feet_result, DS>);

static_assert(
    std::is_same_v<decltype(&gait_statistics_build_parameters),
                   void (*)(gait_statistics&, const gait_foot_result&, const std::list<int>&,
                            const std::string&, gait_feet_result*, const std::list<int>*)>);

}  // namespace
