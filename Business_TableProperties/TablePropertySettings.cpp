#include "Business_TableProperties/TablePropertySettings.h"

#include <array>
#include <boost/thread/lock_types.hpp>
#include <boost/thread/mutex.hpp>
#include <optional>

#include "Business_IncSimulationPrimitives/GlobalForcesDefinition.h"
#include "Business_IncSimulationPrimitives/ToolForceBusinessName.h"
#include "Business_ResultVariableCommon/SkinBaseNameUtilities.h"
#include "Persistence_DaoAdapter/SolverTableDataKeys.h"
#include "Persistence_SkinBaseName/SkinBaseName.h"
#include "VantaService_Translator/Translator.h"
#include "VantaService_Translator/TranslatorArg.h"
#include "VantaService_UnicodeTools/UnicodeTools.h"

namespace Kestrel {

namespace {

using Catalogue = std::map<std::string, std::vector<std::string>>;
using Keys = SolverTableDataKeys;

constexpr std::size_t nameCount = 4;  // followed by the unit
constexpr std::size_t columnCount = nameCount + 1;

enum class Source {
  Translated,  ///< each name is its translated text
  Delta,       ///< as Translated, with the delta sign for each "%1"
  Skin,        ///< the first two names are those of a skin, the others as Translated
  RowAbove,    ///< all texts are those of the row above
};

struct Row {
  std::string const& (*key)();  ///< null: the translated business name of the total tool force
  Source source;
  std::array<char const*, nameCount> names;
  char const* unit;
};

std::string const& lineJoinDistance() { return SkinBaseName::LINE_JOIN_DIST_TO_INPUT; }
std::string const& lineJoinGap() { return SkinBaseName::LINE_JOIN_GAP; }
std::string const& lineJoinForceN() { return SkinBaseName::LINE_JOIN_SUMFORCE_N; }
std::string const& lineJoinForceT() { return SkinBaseName::LINE_JOIN_SUMFORCE_T; }

using enum Source;

// clang-format off
constexpr Row rows[] = {
    {&Keys::getNameOfClampNormalForce, Translated, {"Normal Force", "Norm F", "Max Normal Force", "Max Norm F"}, "N"},
    {&Keys::getNameOfClampClosingForce, Translated, {"Closing Force", "Clos F", "Max Closing Force", "Max Clos F"}, "N"},
    {&Keys::getNameOfClampSupportingForce, Translated, {"Supporting Force", "Sup F", "Max Supporting Force", "Max Sup F"}, "N"},
    {&Keys::getNameOfClampTangentialForce, Translated, {"Tangential Force", "Tang F", "Max Tangential Force", "Max Tang F"}, "N"},
    {&Keys::getNameOfClampNormalDisplacement, Translated, {"Distance", "Distance", "Max Distance", "Max Dist"}, "mm"},
    {&Keys::getNameOfClampTeachingDistanceX, Delta, {"Teaching %1X", "%1X", "Teaching %1X", "%1X"}, "mm"},
    {&Keys::getNameOfClampTeachingDistanceY, Delta, {"Teaching %1Y", "%1Y", "Teaching %1Y", "%1Y"}, "mm"},
    {&Keys::getNameOfClampTeachingDistanceZ, Delta, {"Teaching %1Z", "%1Z", "Teaching %1Z", "%1Z"}, "mm"},
    {&Keys::getNameOfClampTotalVariation, Translated, {"Teaching Distance", "Distance", "Teaching Distance", "Distance"}, "mm"},
    {&Keys::getNameOfToolForceInWorkingDir, Translated, {"Force in Working Direction", "F WorkDir", "Max Force in Working Direction", "Max Force"}, "N"},
    {nullptr, RowAbove, {}, nullptr},
    {&Keys::getNameOfPilotForce, Translated, {"Force", "Force", "Max Force", "Max Force"}, "N"},
    {&Keys::getNameOfJoiningTongNormalForce, Translated, {"Normal Force", "Norm F", "Normal Force", "Norm F"}, "N"},
    {&Keys::getNameOfJoiningTongClosingForce, Translated, {"Closing Force", "Clos F", "Closing Force", "Clos F"}, "N"},
    {&Keys::getNameOfJoiningTongSupportingForce, Translated, {"Supporting Force", "Sup F", "Supporting Force", "Sup F"}, "N"},
    {&Keys::getNameOfJoiningTongDistance, Translated, {"Distance", "Distance", "Distance", "Distance"}, "mm"},
    {&Keys::getNameOfJoiningTongGap, Translated, {"Gap", "Gap", "Gap", "Gap"}, "mm"},
    {&Keys::getNameOfJoiningTeachingX, Delta, {"Teaching %1X", "%1X", "%1Teaching %1X", "%1X"}, "mm"},
    {&Keys::getNameOfJoiningTeachingY, Delta, {"Teaching %1Y", "%1Y", "%1Teaching %1Y", "%1Y"}, "mm"},
    {&Keys::getNameOfJoiningTeachingZ, Delta, {"Teaching %1Z", "%1Z", "%1Teaching %1Z", "%1Z"}, "mm"},
    {&Keys::getNameOfJoiningTeachingTotalVariation, Translated, {"Teaching Distance", "Distance", "Teaching Distance", "Distance"}, "mm"},
    {&lineJoinDistance, Translated, {"Max Distance", "Max Distance", "Max Distance", "Max Distance"}, "mm"},
    {&lineJoinGap, Translated, {"Max Gap", "Max Gap", "Max Gap", "Max Gap"}, "mm"},
    {&Keys::getNameOfJoinForceN, Translated, {"Normal Force", "Norm F", "Max Normal Force", "Max Norm F"}, "N"},
    {&Keys::getNameOfJoinTangentialForce, Translated, {"Tangential Force", "Tang F", "Max Tangential Force", "Max Tang F"}, "N"},
    {&lineJoinForceN, Skin, {"Normal Force", "Norm F", "Max Normal Force", "Max Norm F"}, "N"},
    {&lineJoinForceT, Skin, {"Tangential Force", "Tang F", "Max Tangential Force", "Max Tang F"}, "N"},
    {&Keys::getNameOfSuctionZoneForceX, Translated, {"Suction Force X", "Frc X", "Frc X", "Frc X"}, "N"},
    {&Keys::getNameOfSuctionZoneForceY, Translated, {"Suction Force Y", "Frc Y", "Frc Y", "Frc Y"}, "N"},
    {&Keys::getNameOfSuctionZoneForceZ, Translated, {"Suction Force Z", "Frc Z", "Frc Z", "Frc Z"}, "N"},
    {&Keys::getNameOfSuctionZoneAbsForce, Translated, {"Suction Force", "Force", "Force", "Force"}, "N"},
    {&Keys::getNameOfSuctionDistance, Translated, {"Distance", "Distance", "Distance", "Distance"}, "mm"},
};
// clang-format on

std::string genKey(Row const& row) {
  if (row.key != nullptr) return row.key();
  return ToolForceBusinessName::getTranslated(GlobalForcesDefinition::s_totalToolForces);
}

/// The names of the rows; keeps the delta sign, which is converted when the first row needs it.
class Namer {
 public:
  std::string genName(Row const& row, std::size_t column) {
    auto const* text = row.names[column];
    if (row.source == Skin && column == 0) return SkinBaseNameUtilities::getSkinDisplayName(text);
    if (row.source == Skin && column == 1) return SkinBaseNameUtilities::getSkinShortDisplayName(text);
    if (row.source == Delta) {
      if (!m_delta) m_delta = UnicodeTools::wstring_to_utf8(L"\u0394");
      return TranslatorArg::translate(context, text, comments[column], -1).arg(*m_delta);
    }
    return Translator::translate(context, text, comments[column], -1);
  }

 private:
  static constexpr char const* context = "TablePropertySettings";
  static constexpr std::array<char const*, nameCount> comments = {
      "Property display name", "Property short display name", "Property table display name",
      "Property short table display name"};

  std::optional<std::string> m_delta;
};

void fill(Catalogue& catalogue) {
  catalogue.try_emplace("DescriptionEntry",
                        std::vector<std::string>{"DisplayName", "ShortDisplayName", "TableDisplayName",
                                                 "ShortTableDisplayName", "Unit"});
  Namer namer;
  std::vector<std::string> texts(columnCount);
  for (auto const& row : rows) {
    if (row.source != RowAbove) {
      for (std::size_t column = 0; column < nameCount; ++column) texts[column] = namer.genName(row, column);
      texts[nameCount] = row.unit;
    }
    // The copy comes before the entry, so that no entry is left without texts when there is no memory for
    // them.
    catalogue.insert_or_assign(genKey(row), std::vector<std::string>(texts));
  }
}

boost::mutex s_mutex;
Catalogue s_catalogue;

}  // namespace

TablePropertySettings::TablePropertySettings() = default;

TablePropertySettings::TablePropertySettings(TablePropertySettings const& other) = default;

TablePropertySettings& TablePropertySettings::operator=(TablePropertySettings const& /*other*/) = default;

TablePropertySettings::~TablePropertySettings() = default;

std::string TablePropertySettings::getDisplayName(std::string const& key) { return getProperty(key, 0); }

std::string TablePropertySettings::getShortDisplayName(std::string const& key) { return getProperty(key, 1); }

std::string TablePropertySettings::getTableDisplayName(std::string const& key) { return getProperty(key, 2); }

std::string TablePropertySettings::getShortTableDisplayName(std::string const& key) {
  return getProperty(key, 3);
}

std::string TablePropertySettings::getUnitString(std::string const& key) { return getProperty(key, 4); }

std::string const& TablePropertySettings::getProperty(std::string const& key, int column) {
  static std::string const none;
  auto const& catalogue = initMap();
  auto const row = catalogue.find(key);
  return row == catalogue.end() ? none : row->second[static_cast<std::size_t>(column)];
}

Catalogue const& TablePropertySettings::initMap() {
  boost::mutex::scoped_lock const lock(s_mutex);
  if (s_catalogue.empty()) fill(s_catalogue);
  return s_catalogue;
}

}  // namespace Kestrel
