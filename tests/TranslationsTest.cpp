#include <gettext-po.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "Business_TableProperties/SimUnitMaxValuesProvider.h"
#include "Business_TableProperties/TablePropertySettings.h"
#include "VantaService_Translator/MessageCatalogue.h"
#include "result_tables/base/Text.h"
#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"
#include "support/TranslatorSpy.h"

// The catalogues hold what the code asks for, all of it and nothing else.

/// The reader of .po files keeps the texts that it has read.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer calls it by this name
extern "C" [[gnu::visibility("default")]] char const* __lsan_default_suppressions() {
  return "leak:libgettextpo";
}

namespace Kestrel {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;

fs::path const sourceDirectory = KESTREL_SOURCE_DIR;
fs::path const translationsDirectory = sourceDirectory / "translations";
fs::path const builtDirectory = KESTREL_BINARY_DIR "/translations";

/// A message's msgctxt and msgid.
using Message = std::pair<std::string, std::string>;
using Messages = std::set<Message>;

Messages& asked() {
  static Messages messages;
  return messages;
}

Messages askedIn(std::string const& context) {
  Messages messages;
  for (auto const& message : asked()) {
    if (message.first == context) messages.insert(message);
  }
  return messages;
}

Messages inContext(std::string const& context, std::vector<std::string> const& texts) {
  Messages messages;
  for (auto const& text : texts) messages.emplace(context, text);
  return messages;
}

// ---- what the code asks for

/// All texts of the provider; some of them are asked for only where a unit has such elements.
Messages const providerMessages =
    inContext("SimUnitMaxValuesProvider",
              {"Clamps", "Bolts", "Pilots", "Suction Zones", "Clamping Tools", "Rollers", "Steels",
               "Hemming Bed", "Joining Tools", "Joins", "Line Joins", "Line Joining Tools", "Forces",
               "Distances", "Teaching", "Values", "Joining Failed", " (Joining Failed)"});

template <typename Id>
Id idEndingIn(char digit) {
  return Id(*GUIdentifier::fromString(std::string("00000000-0000-0000-0000-00000000000") + digit));
}

/// A unit with an element of every family.
struct FullUnit {
  FullUnit() {
    using enum ToolForceDataType;
    for (auto const& [id, type] :
         {std::pair("Pilot", pilot), std::pair("Clamp", clamp), std::pair("Tool", tool),
          std::pair("Join", spotWeld), std::pair("Tong", joiningTong), std::pair("Zone", suctionZone),
          std::pair("Bolt", bolt)}) {
      unit.addTool(id, type);
    }
    unit.setVisibleSteps(0, 0);
    auto const joinId = idEndingIn<EvalSimulationUnitJoinGUID>('1');
    unit.addJoinDefinedInSimUnit(joinId);

    constexpr BodyJoinInterface::JoinState state{1};
    auto const step = std::make_shared<SimulationStep>();
    step->addSuctionZone(idEndingIn<EvalSuctionZoneGUID>('2'),
                         std::make_shared<EvalSuctionZone>("Zone", true));
    step->addJoiningTong(std::make_shared<EvalJoiningTong>("Tong", "Tong", state));
    step->addJoin(idEndingIn<EvalJoinGUID>('3'), std::make_shared<SimulationBodyJoin>("Join", "Join", state));
    step->addLineJoin(idEndingIn<EvalLineJoinGUID>('4'),
                      std::make_shared<SimulationBodyLineJoin>("Line", "Line", state, joinId));
    result = std::make_shared<SimulationResult>(std::vector{step});
  }

  SimulationUnit unit{SimulationUnitId(), "OP20"};
  std::shared_ptr<SimulationResult> result;
};

/// Asks the library for everything that it translates.
void askTheLibrary() {
  FullUnit const full;
  SimUnitMaxValuesProvider const provider(full.unit, full.result);
  for (unsigned int number = 0; number < 16; ++number) {
    auto const family = static_cast<MaxValueGroupContainer::DataType>(number);
    (void)provider.genGetMaxValuesCollection(family);
    (void)provider.genGetClampMaxValuesCollection(family, true);
    (void)provider.genGetToolMaxValuesCollection({{"Group", {"Tool"}}}, family);
  }
  (void)TablePropertySettings::getDisplayName("");
}

// ---- what the catalogues hold

struct Entry {
  std::vector<std::string> translations;  ///< the plural forms; one where there are none
  bool isFuzzy = false;
};

[[noreturn]] void refuse(int, po_message_t, char const* file, std::size_t line, std::size_t, int,
                         char const* text) {
  throw std::runtime_error(std::string(file ? file : "?") + ':' + std::to_string(line) + ": " + text);
}

void refusePair(int severity, po_message_t message, char const* file, std::size_t line, std::size_t column,
                int isLong, char const* text, po_message_t, char const*, std::size_t, std::size_t, int,
                char const*) {
  refuse(severity, message, file, line, column, isLong, text);
}

std::string orEmpty(char const* text) { return text ? text : ""; }

Entry entryOf(po_message_t message) {
  Entry entry;
  entry.isFuzzy = po_message_is_fuzzy(message) != 0;
  if (!po_message_msgid_plural(message)) {
    entry.translations.push_back(orEmpty(po_message_msgstr(message)));
  } else {
    for (int i = 0; auto const* form = po_message_msgstr_plural(message, i); ++i)
      entry.translations.emplace_back(form);
  }
  return entry;
}

/// The entries of a .po file, the header and obsolete ones left out.
std::map<Message, Entry> readCatalogue(fs::path const& file) {
  po_xerror_handler const handler = {&refuse, &refusePair};
  std::unique_ptr<po_file, decltype(&po_file_free)> const catalogue(po_file_read(file.c_str(), &handler),
                                                                    &po_file_free);
  if (!catalogue) throw std::runtime_error("cannot read " + file.native());
  std::unique_ptr<std::remove_pointer_t<po_message_iterator_t>, decltype(&po_message_iterator_free)> const
      iterator(po_message_iterator(catalogue.get(), nullptr), &po_message_iterator_free);
  std::map<Message, Entry> entries;
  while (auto* message = po_next_message(iterator.get())) {
    Message const key{orEmpty(po_message_msgctxt(message)), po_message_msgid(message)};
    if (key == Message() || po_message_is_obsolete(message) != 0) continue;
    entries.emplace(key, entryOf(message));
  }
  return entries;
}

std::vector<fs::path> catalogueFiles() {
  std::vector<fs::path> files;
  for (auto const& entry : fs::directory_iterator(translationsDirectory)) {
    if (entry.path().extension() == ".po") files.push_back(entry.path());
  }
  return files;
}

/// The texts that the sources of a folder mark with these functions, such as `tr("...")`.
Messages messagesMarkedIn(fs::path const& folder, std::string const& keywords, std::string const& context) {
  std::string sources;
  for (auto const& entry : fs::recursive_directory_iterator(folder)) {
    auto const extension = entry.path().extension();
    if (extension == ".cpp" || extension == ".h") sources += ' ' + quotedForShell(entry.path().native());
  }
  if (sources.empty()) return {};
  TemporaryFolder const temporary;
  auto const extracted = temporary.path() / "messages.pot";
  (void)outputOfCommand("xgettext --language=C++ --from-code=UTF-8 --keyword " + keywords +
                        " --force-po -o " + quotedForShell(extracted.native()) + sources);
  Messages messages;
  for (auto const& [message, entry] : readCatalogue(extracted)) messages.emplace(context, message.second);
  return messages;
}

Messages expectedMessages() {
  askTheLibrary();
  auto messages = asked();
  messages.insert(providerMessages.begin(), providerMessages.end());
  messages.merge(messagesMarkedIn(sourceDirectory / "result_tables", "--keyword=tr", "result-tables"));
  messages.merge(messagesMarkedIn(sourceDirectory / "python", "--keyword=tr", "result-tables"));
  messages.merge(messagesMarkedIn(sourceDirectory / "host", "--keyword=archiveText --keyword=expect:3",
                                  "PersistenceArchiver"));
  return messages;
}

Messages missingFrom(Messages const& all, Messages const& some) {
  Messages missing;
  std::set_difference(all.begin(), all.end(), some.begin(), some.end(),
                      std::inserter(missing, missing.end()));
  return missing;
}

/// The numbers of the places "{}" and "{1}" of a text, and the names of those like "{rows}", sorted.
std::vector<std::string> placesOf(std::string const& text) {
  std::vector<std::string> places;
  for (std::size_t at = 0; (at = text.find('{', at)) != std::string::npos; ++at) {
    auto const name = text.substr(at + 1, text.find('}', at) - at - 1);
    places.push_back(name.empty() ? std::to_string(places.size()) : name);
  }
  std::sort(places.begin(), places.end());
  return places;
}

std::size_t count(std::string const& text, std::string const& placeholder) {
  std::size_t number = 0;
  for (std::size_t at = 0; (at = text.find(placeholder, at)) != std::string::npos; at += placeholder.size())
    ++number;
  return number;
}

}  // namespace

void onTranslate(TranslatorCall const& call) {
  asked().emplace(call.comment ? call.context + '|' + *call.comment : call.context, call.text);
}

namespace {

TEST(Translations, TheProviderAsksForItsTextsOnly) {
  askTheLibrary();
  auto const messages = askedIn("SimUnitMaxValuesProvider");
  EXPECT_EQ(messages, providerMessages);
  EXPECT_EQ(messages.count({"SimUnitMaxValuesProvider", " (Joining Failed)"}), 1u);
  EXPECT_EQ(messages.count({"SimUnitMaxValuesProvider", "Teaching"}), 1u);
}

TEST(Translations, TheCatalogueAsksInFourRoles) {
  askTheLibrary();
  EXPECT_EQ(askedIn("TablePropertySettings|Property display name").size(), 18u);
  EXPECT_EQ(askedIn("TablePropertySettings|Property short display name").size(), 16u);
  EXPECT_EQ(askedIn("TablePropertySettings|Property table display name").size(), 24u);
  EXPECT_EQ(askedIn("TablePropertySettings|Property short table display name").size(), 20u);
  EXPECT_EQ(askedIn("SkinBaseNameUtilities|Skin display name"),
            inContext("SkinBaseNameUtilities|Skin display name", {"Normal Force", "Tangential Force"}));
  EXPECT_EQ(askedIn("SkinBaseNameUtilities|Skin short display name"),
            inContext("SkinBaseNameUtilities|Skin short display name", {"Norm F", "Tang F"}));
  EXPECT_EQ(askedIn("ToolForceBusinessName"), inContext("ToolForceBusinessName", {"Total Tool Forces"}));
}

TEST(Translations, ComeInGermanAndJapanese) {
  EXPECT_TRUE(fs::exists(translationsDirectory / "de.po"));
  EXPECT_TRUE(fs::exists(translationsDirectory / "ja.po"));
}

TEST(Translations, HaveEveryTextThatTheCodeAsksForAndNoOther) {
  auto const expected = expectedMessages();
  for (auto const& file : catalogueFiles()) {
    Messages present;
    for (auto const& [message, entry] : readCatalogue(file)) present.insert(message);
    EXPECT_THAT(missingFrom(expected, present), IsEmpty()) << "missing in " << file;
    EXPECT_THAT(missingFrom(present, expected), IsEmpty()) << "asked for by no code, in " << file;
  }
}

TEST(Translations, AreCompleteAndSure) {
  for (auto const& file : catalogueFiles()) {
    for (auto const& [message, entry] : readCatalogue(file)) {
      auto const place = file.filename().native() + ": " + message.first + ": " + message.second;
      EXPECT_FALSE(entry.isFuzzy) << place;
      ASSERT_FALSE(entry.translations.empty()) << place;
      for (auto const& translation : entry.translations) {
        EXPECT_NE(translation, "") << place;
        for (auto const* const placeholder : {"%1", "%2"})
          EXPECT_EQ(count(translation, placeholder), count(message.second, placeholder)) << place;
        EXPECT_EQ(placesOf(translation), placesOf(message.second)) << place;
        EXPECT_EQ(translation.starts_with(' '), message.second.starts_with(' ')) << place;
      }
    }
  }
}

TEST(Translations, AreBuilt) {
  for (auto const& file : catalogueFiles()) {
    auto const compiled = MessageCatalogue::read(builtDirectory / file.stem() / "LC_MESSAGES" / "kestrel.mo");
    ASSERT_TRUE(compiled) << file;
    for (auto const& [message, entry] : readCatalogue(file)) {
      EXPECT_EQ(orEmpty(compiled->find(message.first.c_str(), message.second.c_str(), -1)),
                entry.translations.at(0))
          << file << message.first;
    }
  }
}

TEST(Translations, ShortNamesAreNotLongerThanTheNamesTheyStandFor) {
  std::vector<std::pair<std::string, std::string>> const names = {{"Normal Force", "Norm F"},
                                                                  {"Closing Force", "Clos F"},
                                                                  {"Supporting Force", "Sup F"},
                                                                  {"Tangential Force", "Tang F"},
                                                                  {"Force in Working Direction", "F WorkDir"},
                                                                  {"Suction Force X", "Frc X"}};
  for (auto const& file : catalogueFiles()) {
    auto const entries = readCatalogue(file);
    for (auto const& [name, shortName] : names) {
      auto const& full = entries.at({"TablePropertySettings|Property display name", name}).translations.at(0);
      auto const& brief =
          entries.at({"TablePropertySettings|Property short display name", shortName}).translations.at(0);
      EXPECT_LE(brief.size(), full.size()) << file << ' ' << name;
    }
  }
}

// ---- the glossary of docs/translations.md

struct Term {
  std::string english;
  std::map<std::string, std::vector<std::string>> words;  ///< by language
  std::vector<std::string> notUsed;
};

std::vector<std::string> split(std::string const& text, std::string const& separator) {
  std::vector<std::string> parts;
  for (std::size_t begin = 0, end = 0; end != text.npos; begin = end + separator.size()) {
    end = text.find(separator, begin);
    if (auto part = text.substr(begin, end - begin); !part.empty()) parts.push_back(std::move(part));
  }
  return parts;
}

std::vector<Term> readGlossary() {
  std::ifstream page(sourceDirectory / "docs" / "translations.md");
  std::string line;
  while (std::getline(page, line) && line != "| English | German | Japanese | not used |") continue;
  std::getline(page, line);
  std::vector<Term> terms;
  while (std::getline(page, line) && line.starts_with("| ")) {
    auto const cells = split(line.substr(2), " | ");
    auto const notUsed = cells.size() > 3 ? cells[3].substr(0, cells[3].size() - 2) : std::string();
    terms.push_back({cells.at(0),
                     {{"de", split(cells.at(1), ", ")}, {"ja", split(cells.at(2), ", ")}},
                     split(notUsed, ", ")});
  }
  return terms;
}

std::string inLowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) {
    return c < 0x80 ? static_cast<char>(std::tolower(c)) : static_cast<char>(c);
  });
  return text;
}

bool hasOneOf(std::string const& text, std::vector<std::string> const& words) {
  return std::any_of(words.begin(), words.end(), [&text](std::string const& word) {
    return text.find(inLowerCase(word)) != std::string::npos;
  });
}

/// Finds a term in a text, unless it is an option or the suffix of a file; "families" has "family".
std::regex searchFor(std::string const& term) {
  auto const stem = term.ends_with('y') ? term.substr(0, term.size() - 1) + "(?:y|ies)" : term + "s?";
  return std::regex("(?:^|[^-.\\w])" + stem + "\\b", std::regex::icase | std::regex::optimize);
}

TEST(Translations, KeepToTheGlossary) {
  auto const terms = readGlossary();
  ASSERT_EQ(terms.size(), 37U);
  for (std::string const language : {"de", "ja"}) {
    std::vector<std::pair<std::string, std::string>> texts;
    for (auto const& [message, entry] : readCatalogue(translationsDirectory / (language + ".po")))
      texts.emplace_back(message.second, inLowerCase(entry.translations.at(0)));
    for (auto const& term : terms) {
      auto const english = searchFor(term.english);
      std::size_t mentioned = 0;
      std::size_t kept = 0;
      for (auto const& [text, translation] : texts) {
        EXPECT_FALSE(hasOneOf(translation, term.notUsed)) << term.english << ": " << translation;
        if (!std::regex_search(text, english)) continue;
        ++mentioned;
        if (hasOneOf(translation, term.words.at(language))) ++kept;
      }
      EXPECT_GT(kept, 0U) << language << ": " << term.english;
      EXPECT_GE(2 * kept, mentioned) << language << ": " << term.english;
    }
  }
}

// ---- how Japanese is set

enum class Glyph { letterOrDigit, halfWidthMark, blank, kanaOrKanji, fullWidthMark, other };

Glyph glyphOf(std::string_view character) {
  constexpr std::string_view marks[] = {"、", "。", "（", "）", "「", "」", "？"};
  if (std::find(std::begin(marks), std::end(marks), character) != std::end(marks))
    return Glyph::fullWidthMark;
  if (character == " ") return Glyph::blank;
  if (character.size() == 1) {
    if (std::isalnum(static_cast<unsigned char>(character[0])) != 0) return Glyph::letterOrDigit;
    return std::string_view("(),;?!").find(character) != std::string_view::npos ? Glyph::halfWidthMark
                                                                                : Glyph::other;
  }
  // Kana begin with U+3041, kanji of everyday texts end with U+9FFF.
  return character >= "\u3041" && character <= "\u9FFF" ? Glyph::kanaOrKanji : Glyph::other;
}

bool mayStandTogether(Glyph first, Glyph second) {
  using enum Glyph;
  std::set<Glyph> const pair = {first, second};
  return pair != std::set{letterOrDigit, kanaOrKanji} && pair != std::set{halfWidthMark, kanaOrKanji} &&
         pair != std::set{blank, fullWidthMark};
}

TEST(Translations, InJapaneseAreSetInOneWay) {
  for (auto const& [message, entry] : readCatalogue(translationsDirectory / "ja.po")) {
    auto const& translation = entry.translations.at(0);
    std::string_view text = translation;
    if (text.starts_with(' ')) text.remove_prefix(1);
    auto before = Glyph::other;
    while (!text.empty()) {
      // A place of a value, which may be a sign alone.
      if (text.starts_with("%1") || text.starts_with("%2")) {
        before = Glyph::other;
        text.remove_prefix(2);
        continue;
      }
      auto const character = ResultTables::firstCharacter(text);
      EXPECT_TRUE(mayStandTogether(before, glyphOf(character))) << translation << ", at " << text;
      before = glyphOf(character);
      text.remove_prefix(character.size());
    }
    EXPECT_FALSE(std::regex_search(translation, std::regex("限界(?!値)"))) << translation;
  }
}

}  // namespace
}  // namespace Kestrel
