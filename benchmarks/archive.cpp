// Saving and loading the limits of a document, beside two libraries that write the same limits with their own
// tracking of shared pointers: boost::archive::binary and cereal's binary archive. All start from limits that
// are children of one object and end with such. The peers write what a limit says (kind, unit, value, unit
// text) and its child id, and make the limits children of an object when they are read; the archive also
// stores names, links and versions, checks the document against damage and builds the index of units.
//
// `bytes` is the size of the document, `peak` what loading one that is in memory adds to the peak memory of
// the process, `transient` the part of it that is gone when the limits are loaded.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <boost/serialization/binary_object.hpp>
#include <boost/serialization/shared_ptr.hpp>
#include <boost/serialization/split_free.hpp>
#include <boost/serialization/string.hpp>
#include <boost/serialization/vector.hpp>
#include <boost/uuid/random_generator.hpp>
#include <cereal/archives/binary.hpp>
#include <cereal/types/memory.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/vector.hpp>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "Business_TableProperties/TablePropertiesData.h"
#include "VantaService_Parameterization/ObjectHelper.h"
#include "VantaService_PersistenceArchiver/Document.h"
#include "benchmarks/Memory.h"

namespace Kestrel {
namespace {

using LimitList = std::vector<std::shared_ptr<TablePropertyLimit>>;

/// What the peers store of a limit.
struct StoredLimit {
  unsigned int type = 0;
  boost::uuids::uuid unit{};
  double limit = 0.0;
  std::string unitString;
  int childId = 0;

  StoredLimit() = default;
  explicit StoredLimit(TablePropertyLimit const& from)
      : type(static_cast<unsigned int>(from.getType())),
        unit(from.getSimUnitID().getUuid()),
        limit(from.getLimit()),
        unitString(from.getUnitString()),
        childId(from.getChildId()) {}

  [[nodiscard]] SimulationUnitId getUnit() const { return SimulationUnitId(GUIdentifier(unit)); }
  [[nodiscard]] TablePropertyLimitType getType() const { return static_cast<TablePropertyLimitType>(type); }
};

}  // namespace
}  // namespace Kestrel

namespace cereal {

template <typename Archive>
void save(Archive& archive, Kestrel::TablePropertyLimit const& limit) {
  Kestrel::StoredLimit stored(limit);
  archive(stored.type, binary_data(stored.unit.data, sizeof stored.unit.data), stored.limit,
          stored.unitString, stored.childId);
}

template <>
struct LoadAndConstruct<Kestrel::TablePropertyLimit> {
  template <typename Archive>
  static void load_and_construct(Archive& archive, construct<Kestrel::TablePropertyLimit>& construct) {
    Kestrel::StoredLimit stored;
    archive(stored.type, binary_data(stored.unit.data, sizeof stored.unit.data), stored.limit,
            stored.unitString, stored.childId);
    construct(stored.getType(), stored.getUnit(), stored.limit, stored.unitString);
  }
};

}  // namespace cereal

namespace boost::serialization {

template <typename Archive>
void serializeStored(Archive& archive, Kestrel::StoredLimit& stored) {
  archive& stored.type;
  archive& make_binary_object(stored.unit.data, sizeof stored.unit.data);
  archive& stored.limit;
  archive& stored.unitString;
  archive& stored.childId;
}

template <typename Archive>
void serialize(Archive& /*archive*/, Kestrel::TablePropertyLimit& /*limit*/, unsigned int /*version*/) {
  // Everything is in the construction data, as the class cannot be made without it.
}

template <typename Archive>
void save_construct_data(Archive& archive, Kestrel::TablePropertyLimit const* limit,
                         unsigned int /*version*/) {
  Kestrel::StoredLimit stored(*limit);
  serializeStored(archive, stored);
}

template <typename Archive>
void load_construct_data(Archive& archive, Kestrel::TablePropertyLimit* limit, unsigned int /*version*/) {
  Kestrel::StoredLimit stored;
  serializeStored(archive, stored);
  ::new (limit)
      Kestrel::TablePropertyLimit(stored.getType(), stored.getUnit(), stored.limit, stored.unitString);
}

}  // namespace boost::serialization

namespace Kestrel {
namespace {

/// The archive of this project.
struct ObjectArchive {
  using Content = std::shared_ptr<TablePropertiesData>;

  static std::string save(Content const& content) { return genDocument(content); }
  static Content load(std::string& document) { return loadDocument<TablePropertiesData>(document); }
  static std::size_t count(Content const& content) { return content->getChildCount(); }
};

/// A library that writes to a stream and reads from one, without a copy of the document.
template <typename Output, typename Input>
struct StreamArchive {
  struct Content {
    std::shared_ptr<Object> parent = std::make_shared<Object>();
    LimitList limits;
  };

  static std::string save(Content const& content) {
    std::ostringstream stream;
    {
      Output archive(stream);
      archive << content.limits;
    }
    return std::move(stream).str();
  }
  static Content load(std::string& document) {
    std::istringstream stream(std::move(document));
    LimitList limits;
    {
      Input archive(stream);
      archive >> limits;
    }
    document = std::move(stream).str();
    Content content;
    ObjectHelper::addToVectorAtEnd(content.parent.get(), limits, content.limits, "TablePropertyLimit", 1,
                                   false);
    return content;
  }
  static std::size_t count(Content const& content) { return content.parent->getChildCount(); }
};

/// cereal's archives are called, not shifted into.
struct CerealOutput : cereal::BinaryOutputArchive {
  using cereal::BinaryOutputArchive::BinaryOutputArchive;
  void operator<<(LimitList const& limits) { (*this)(limits); }
};
struct CerealInput : cereal::BinaryInputArchive {
  using cereal::BinaryInputArchive::BinaryInputArchive;
  void operator>>(LimitList& limits) { (*this)(limits); }
};

using Cereal = StreamArchive<CerealOutput, CerealInput>;
using BoostArchive = StreamArchive<boost::archive::binary_oarchive, boost::archive::binary_iarchive>;

/// The limits of many units, some of them edited.
std::shared_ptr<TablePropertiesData> genCollection(benchmark::State const& state) {
  std::mt19937 random(3);
  boost::uuids::basic_random_generator<std::mt19937> generate(random);
  std::vector<SimulationUnitId> ids;
  for (std::int64_t i = 0; i < state.range(0); ++i) ids.emplace_back(GUIdentifier(generate()));
  auto data = std::make_shared<TablePropertiesData>();
  data->updateLimits(ids);
  for (std::size_t i = 0; i < data->getChildCount(); i += 3)
    std::dynamic_pointer_cast<TablePropertyLimit>(data->getChild(i))->setLimit(static_cast<double>(i));
  return data;
}

template <typename Archive>
typename Archive::Content genContent(benchmark::State const& state) {
  auto data = genCollection(state);
  if constexpr (std::is_same_v<Archive, ObjectArchive>) {
    return data;
  } else {
    typename Archive::Content content;
    for (auto const& child : data->getRelevantChildren())
      content.limits.push_back(std::dynamic_pointer_cast<TablePropertyLimit>(child));
    content.parent = data;
    return content;
  }
}

template <typename Archive>
void save(benchmark::State& state) {
  auto const content = genContent<Archive>(state);
  std::size_t bytes = 0;
  for ([[maybe_unused]] auto const iteration : state) {
    auto const document = Archive::save(content);
    bytes = document.size();
    benchmark::DoNotOptimize(document.data());
  }
  state.counters["bytes"] = static_cast<double>(bytes);
}

template <typename Archive>
void load(benchmark::State& state) {
  auto document = Archive::save(genContent<Archive>(state));
  auto const limits = 16 * static_cast<std::size_t>(state.range(0));
  for ([[maybe_unused]] auto const iteration : state) {
    auto content = Archive::load(document);
    state.PauseTiming();
    if (Archive::count(content) != limits) state.SkipWithError("limits are missing");
    content = {};
    state.ResumeTiming();
  }
  auto const memory = measureMemory([&] { return Archive::load(document); });
  state.counters["peak"] = memory.peak;
  state.counters["transient"] = memory.peak - memory.kept;
}

void overUnits(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("units")->Arg(100)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(save<ObjectArchive>)->Apply(overUnits);
BENCHMARK(save<Cereal>)->Apply(overUnits);
BENCHMARK(save<BoostArchive>)->Apply(overUnits);
BENCHMARK(load<ObjectArchive>)->Apply(overUnits);
BENCHMARK(load<Cereal>)->Apply(overUnits);
BENCHMARK(load<BoostArchive>)->Apply(overUnits);

}  // namespace
}  // namespace Kestrel

BENCHMARK_MAIN();
