#include "VantaService_Translator/Translator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <boost/endian/conversion.hpp>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "VantaService_Translator/ArgString.h"
#include "VantaService_Translator/MessageCatalogue.h"
#include "VantaService_Translator/TranslatorArg.h"
#include "VantaService_Translator/UserLanguage.h"
#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"

namespace Kestrel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StrEq;

// ---- the languages of the environment

std::vector<std::string> foldersFor(std::map<std::string, std::string> const& environment) {
  return UserLanguage::catalogueFolders([&environment](char const* name) {
    auto const variable = environment.find(name);
    return variable == environment.end() ? nullptr : variable->second.c_str();
  });
}

TEST(UserLanguage, WithoutALocaleThereIsNoLanguage) {
  EXPECT_THAT(foldersFor({}), IsEmpty());
  EXPECT_THAT(foldersFor({{"LC_ALL", ""}, {"LC_MESSAGES", ""}, {"LANG", ""}}), IsEmpty());
  EXPECT_THAT(foldersFor({{"LANGUAGE", "de"}}), IsEmpty());
}

TEST(UserLanguage, TheLocalesOfTheStandardAreNoLanguage) {
  for (auto const* locale : {"C", "POSIX", "C.UTF-8", "C.utf8", "POSIX.UTF-8"}) {
    EXPECT_THAT(foldersFor({{"LANG", locale}}), IsEmpty()) << locale;
    EXPECT_THAT(foldersFor({{"LANG", locale}, {"LANGUAGE", "de"}}), IsEmpty()) << locale;
    EXPECT_THAT(foldersFor({{"LC_ALL", locale}, {"LANG", "de_DE"}}), IsEmpty()) << locale;
  }
  EXPECT_THAT(foldersFor({{"LANG", "Cy"}}), ElementsAre("Cy"));
}

TEST(UserLanguage, TakesTheFirstLocaleThatIsNotEmpty) {
  EXPECT_THAT(foldersFor({{"LC_ALL", "de"}, {"LC_MESSAGES", "ja"}, {"LANG", "fr"}}), ElementsAre("de"));
  EXPECT_THAT(foldersFor({{"LC_ALL", ""}, {"LC_MESSAGES", "ja"}, {"LANG", "fr"}}), ElementsAre("ja"));
  EXPECT_THAT(foldersFor({{"LC_MESSAGES", ""}, {"LANG", "fr"}}), ElementsAre("fr"));
  EXPECT_THAT(foldersFor({{"LC_CTYPE", "de"}, {"LC_MESSAGES", "ja"}}), ElementsAre("ja"));
}

TEST(UserLanguage, CountsForItsShorterForms) {
  EXPECT_THAT(foldersFor({{"LANG", "de_DE"}}), ElementsAre("de_DE", "de"));
  EXPECT_THAT(foldersFor({{"LANG", "de_DE.UTF-8"}}), ElementsAre("de_DE", "de"));
  EXPECT_THAT(foldersFor({{"LANG", "de_DE.UTF-8@euro"}}),
              ElementsAre("de_DE@euro", "de@euro", "de_DE", "de"));
  EXPECT_THAT(foldersFor({{"LANG", "de@euro"}}), ElementsAre("de@euro", "de"));
  EXPECT_THAT(foldersFor({{"LANG", "ja.EUC-JP"}}), ElementsAre("ja"));
}

TEST(UserLanguage, TheListOfLanguagesReplacesTheLocale) {
  EXPECT_THAT(foldersFor({{"LANG", "en_US.UTF-8"}, {"LANGUAGE", "ja:de_AT"}}),
              ElementsAre("ja", "de_AT", "de"));
  EXPECT_THAT(foldersFor({{"LC_ALL", "fr"}, {"LANGUAGE", "ja"}}), ElementsAre("ja"));
  EXPECT_THAT(foldersFor({{"LANG", "fr"}, {"LANGUAGE", ""}}), ElementsAre("fr"));
  EXPECT_THAT(foldersFor({{"LANG", "fr"}, {"LANGUAGE", ":de::ja:"}}), ElementsAre("de", "ja"));
}

TEST(UserLanguage, NoFolderComesTwice) {
  EXPECT_THAT(foldersFor({{"LANG", "fr"}, {"LANGUAGE", "de_AT:de_DE:de:de_AT"}}),
              ElementsAre("de_AT", "de", "de_DE"));
}

TEST(UserLanguage, TheStandardLocaleEndsTheList) {
  EXPECT_THAT(foldersFor({{"LANG", "fr"}, {"LANGUAGE", "de:C:ja"}}), ElementsAre("de"));
  EXPECT_THAT(foldersFor({{"LANG", "fr"}, {"LANGUAGE", "POSIX:ja"}}), IsEmpty());
}

TEST(UserLanguage, NamesOfNoLanguageAreSkipped) {
  for (auto const* name : {"..", "../../tmp", "/etc", "de/x", "@euro", ".UTF-8", "_DE"}) {
    EXPECT_THAT(foldersFor({{"LANG", "fr"}, {"LANGUAGE", name + std::string(":ja")}}), ElementsAre("ja"))
        << name;
  }
}

// ---- catalogues

constexpr char const* header =
    "msgid \"\"\n"
    "msgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n"
    "\"Plural-Forms: nplurals=3; plural=(n==1 ? 0 : n%10>=2 && n%10<=4 && (n%100<10 || n%100>=20) ? 1 : "
    "2);\\n\"\n";

constexpr char const* messages = R"(
msgctxt "Family"
msgid "Clamps"
msgstr "Spanner ß"

msgctxt "Other"
msgid "Clamps"
msgstr "Klammern"

msgid "Clamps"
msgstr "ohne Kontext"

msgctxt "Family|short"
msgid "Clamps"
msgstr "Sp."

msgctxt "Family|both"
msgid ""
"two\n"
"lines"
msgstr "zwei Zeilen"

msgctxt "Family"
msgid "step"
msgid_plural "steps"
msgstr[0] "krok"
msgstr[1] "kroki"
msgstr[2] "kroków"

msgctxt "Family|short"
msgid "step"
msgid_plural "steps"
msgstr[0] "kr."
msgstr[1] "ki."
msgstr[2] "kw."

msgctxt "Family"
msgid "untranslated"
msgstr ""

#, fuzzy
msgctxt "Family"
msgid "guessed"
msgstr "geraten"
)";

class Folder : public TemporaryFolder {
 public:
  /// Compiles `source` to the catalogue of `language` and returns its path.
  [[nodiscard]] fs::path compile(std::string const& source, std::string const& language = "de",
                                 std::string const& options = "") const {
    auto compiled = path() / language / "LC_MESSAGES" / "kestrel.mo";
    auto const text = path() / "source.po";
    fs::create_directories(compiled.parent_path());
    std::ofstream(text) << source;
    (void)outputOfCommand("msgfmt " + options + " -o " + quotedForShell(compiled.native()) + ' ' +
                          quotedForShell(text.native()) + " 2>&1");
    return compiled;
  }
};

std::vector<char> bytesOf(fs::path const& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void write(fs::path const& file, std::string const& content) {
  fs::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << content;
}

std::vector<char> const& soundCatalogue() {
  static auto const bytes = [] {
    Folder const folder;
    return bytesOf(folder.compile(header + std::string(messages)));
  }();
  return bytes;
}

TEST(MessageCatalogue, TellsMessagesApartByContext) {
  auto const catalogue = MessageCatalogue::parse(soundCatalogue());
  ASSERT_TRUE(catalogue);
  EXPECT_THAT(catalogue->find("Family", "Clamps", -1), StrEq("Spanner ß"));
  EXPECT_THAT(catalogue->find("Other", "Clamps", -1), StrEq("Klammern"));
  EXPECT_THAT(catalogue->find("Family|short", "Clamps", -1), StrEq("Sp."));
  EXPECT_THAT(catalogue->find("Family|both", "two\nlines", -1), StrEq("zwei Zeilen"));
  EXPECT_THAT(catalogue->find(nullptr, "Clamps", -1), StrEq("ohne Kontext"));
}

TEST(MessageCatalogue, HasNoTranslationOfWhatIsMissingEmptyOrFuzzy) {
  auto const catalogue = MessageCatalogue::parse(soundCatalogue());
  ASSERT_TRUE(catalogue);
  for (auto const* text : {"clamps", "Clamp", "Clampss", "", "untranslated", "guessed", "steps"}) {
    EXPECT_EQ(catalogue->find("Family", text, -1), nullptr) << text;
    EXPECT_EQ(catalogue->find("Family", text, 1), nullptr) << text;
  }
  EXPECT_EQ(catalogue->find("Nobody", "Clamps", -1), nullptr);
}

TEST(MessageCatalogue, ChoosesThePluralFormOfTheCount) {
  auto const catalogue = MessageCatalogue::parse(soundCatalogue());
  ASSERT_TRUE(catalogue);
  std::map<int, std::string> const forms = {
      {0, "kroków"},  {1, "krok"},   {2, "kroki"},    {4, "kroki"},    {5, "kroków"},
      {12, "kroków"}, {22, "kroki"}, {101, "kroków"}, {112, "kroków"}, {2147483647, "kroków"}};
  for (auto const& [count, form] : forms) EXPECT_EQ(catalogue->find("Family", "step", count), form) << count;
}

TEST(MessageCatalogue, GivesTheFirstFormWithoutACountAndWithoutPluralForms) {
  auto const catalogue = MessageCatalogue::parse(soundCatalogue());
  ASSERT_TRUE(catalogue);
  EXPECT_THAT(catalogue->find("Family", "step", -1), StrEq("krok"));
  EXPECT_THAT(catalogue->find("Family", "step", -2147483647 - 1), StrEq("krok"));
  for (int const count : {0, 1, 2, 5})
    EXPECT_THAT(catalogue->find("Other", "Clamps", count), StrEq("Klammern"));
}

TEST(MessageCatalogue, ReadsEitherByteOrderWithAndWithoutHashTable) {
  Folder const folder;
  for (auto const* options : {"--endianness=big", "--endianness=little", "--no-hash"}) {
    auto const catalogue =
        MessageCatalogue::read(folder.compile(header + std::string(messages), "de", options));
    ASSERT_TRUE(catalogue) << options;
    EXPECT_THAT(catalogue->find("Family", "Clamps", -1), StrEq("Spanner ß")) << options;
    EXPECT_THAT(catalogue->find("Family", "step", 3), StrEq("kroki")) << options;
  }
}

TEST(MessageCatalogue, ConvertsOtherCharacterSets) {
  Folder const folder;
  auto const catalogue = MessageCatalogue::read(
      folder.compile("msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=ISO-8859-1\\n\"\n"
                     "msgid \"Steels\"\nmsgstr \"St\xE4hle\"\n"));
  ASSERT_TRUE(catalogue);
  EXPECT_THAT(catalogue->find(nullptr, "Steels", -1), StrEq("Stähle"));
}

TEST(MessageCatalogue, CopiesShareTheMessages) {
  auto first = MessageCatalogue::parse(soundCatalogue());
  auto const copy = *first;
  auto const* text = copy.find("Family", "Clamps", -1);
  EXPECT_EQ(text, first->find("Family", "Clamps", -1));
  first.reset();
  EXPECT_THAT(text, StrEq("Spanner ß"));
}

TEST(MessageCatalogue, WhatCannotBeReadIsNone) {
  Folder const folder;
  EXPECT_FALSE(MessageCatalogue::read(folder.path() / "missing.mo"));
  EXPECT_FALSE(MessageCatalogue::read(folder.path()));
  EXPECT_FALSE(MessageCatalogue::read("/dev/zero"));
  write(folder.path() / "empty.mo", "");
  EXPECT_FALSE(MessageCatalogue::read(folder.path() / "empty.mo"));
  write(folder.path() / "text.mo",
        "msgid \"Clamps\"\nmsgstr \"Spanner, written by somebody who did not compile it\"\n");
  EXPECT_FALSE(MessageCatalogue::read(folder.path() / "text.mo"));
}

TEST(MessageCatalogue, CutOffAnywhereIsNone) {
  auto const& sound = soundCatalogue();
  for (std::size_t size = 0; size < sound.size(); ++size) {
    std::vector<char> const cut(sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_FALSE(MessageCatalogue::parse(cut)) << size;
  }
}

std::uint32_t wordAt(std::vector<char> const& bytes, std::size_t offset) {
  std::uint32_t value = 0;
  std::memcpy(&value, bytes.data() + offset, sizeof value);
  return boost::endian::little_to_native(value);
}

std::vector<char> withWord(std::size_t offset, std::uint32_t value) {
  auto bytes = soundCatalogue();
  value = boost::endian::native_to_little(value);
  std::memcpy(bytes.data() + offset, &value, sizeof value);
  return bytes;
}

TEST(MessageCatalogue, DamagedTablesAreNone) {
  auto const& sound = soundCatalogue();
  auto const keys = wordAt(sound, 12);
  auto const texts = wordAt(sound, 16);
  auto const size = static_cast<std::uint32_t>(sound.size());
  EXPECT_FALSE(MessageCatalogue::parse(withWord(0, 0x950412df))) << "magic number";
  EXPECT_FALSE(MessageCatalogue::parse(withWord(4, 0x20000))) << "major revision";
  for (std::uint32_t const count : {0u, size, 0x20000000u, 0xFFFFFFFFu}) {
    EXPECT_FALSE(MessageCatalogue::parse(withWord(8, count))) << "messages " << count;
  }
  for (std::uint32_t const offset : {size - 8, size, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_FALSE(MessageCatalogue::parse(withWord(12, offset))) << "table of keys " << offset;
    EXPECT_FALSE(MessageCatalogue::parse(withWord(16, offset))) << "table of texts " << offset;
  }
  for (std::uint32_t const table : {keys, texts}) {
    for (std::uint32_t const entry : {0u, 3u}) {
      for (std::uint32_t const value : {size, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        EXPECT_FALSE(MessageCatalogue::parse(withWord(table + 8 * entry, value))) << "length " << value;
        EXPECT_FALSE(MessageCatalogue::parse(withWord(table + 8 * entry + 4, value))) << "offset " << value;
      }
      auto const length = wordAt(sound, table + 8 * entry);
      EXPECT_FALSE(MessageCatalogue::parse(withWord(table + 8 * entry, length + 1))) << "no end";
    }
  }
}

TEST(MessageCatalogue, ADamagedHashTableDoesNotMatter) {
  for (std::uint32_t const hashSize : {0u, 1u, 2u, 0xFFFFFFFFu}) {
    auto const catalogue = MessageCatalogue::parse(withWord(20, hashSize));
    ASSERT_TRUE(catalogue) << hashSize;
    EXPECT_THAT(catalogue->find("Family", "Clamps", -1), StrEq("Spanner ß")) << hashSize;
  }
}

TEST(MessageCatalogue, AnyDamagedByteIsSurvived) {
  std::size_t readable = 0;
  for (std::size_t at = 0; at < soundCatalogue().size(); ++at) {
    for (int const flip : {0x01, 0x80, 0xFF}) {
      auto bytes = soundCatalogue();
      bytes[at] = static_cast<char>(bytes[at] ^ flip);
      auto const catalogue = MessageCatalogue::parse(bytes);
      if (!catalogue) continue;
      ++readable;
      auto const* translation = catalogue->find("Family", "step", 5);
      EXPECT_TRUE(!translation || std::strlen(translation) < bytes.size()) << at;
    }
  }
  EXPECT_GT(readable, 0u) << "damaged letters make a catalogue that can be read";
}

TEST(MessageCatalogue, TextsThatAreNotOfTheCharacterSetAreNone) {
  Folder const folder;
  auto bytes = bytesOf(folder.compile(header + std::string("msgid \"Steels\"\nmsgstr \"Stähle\"\n")));
  auto const at = std::string_view(bytes.data(), bytes.size()).find("ähle");
  ASSERT_NE(at, std::string_view::npos);
  bytes[at + 1] = 'x';
  EXPECT_FALSE(MessageCatalogue::parse(bytes));
}

TEST(MessageCatalogue, AnUnknownOrMissingCharacterSetIsNone) {
  for (std::string const line : {"Content-Type: text/plain; charset=KLINGON\\n", "Language: de\\n"}) {
    Folder const folder;
    auto const file = folder.compile("msgid \"\"\nmsgstr \"" + line + "\"\nmsgid \"a\"\nmsgstr \"b\"\n");
    EXPECT_FALSE(MessageCatalogue::read(file)) << line;
  }
}

TEST(MessageCatalogue, AnEndlessPluralRuleIsNone) {
  Folder const folder;
  auto bytes =
      bytesOf(folder.compile("msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n\"" +
                             std::string(200000, '(') + "\"\n"));
  auto const rule = std::string_view(bytes.data(), bytes.size()).find("((((((((");
  ASSERT_NE(rule, std::string_view::npos);
  std::memcpy(bytes.data() + rule, "plural=", 7);
  EXPECT_FALSE(MessageCatalogue::parse(bytes));
}

// ---- the translator as a whole: its language is chosen when the process starts, so each answer is a new
// process

using Strings = std::vector<std::string>;

/// What a new process says; the comment "-" stands for none.
std::string translated(Strings const& environment, std::string const& context, std::string const& text,
                       std::string const& comment = "-", int count = -1) {
  return outputOfThisProgram(environment, {"--translate", context, text, comment, std::to_string(count)});
}

Strings inFolder(Folder const& folder, Strings environment) {
  environment.push_back("KESTREL_LOCALEDIR=" + folder.path().native());
  return environment;
}

TEST(Translator, GivesTheTextWithoutALanguage) {
  EXPECT_EQ(translated({}, "SimUnitMaxValuesProvider", "Clamps"), "Clamps");
  EXPECT_EQ(translated({"LC_ALL=C", "LANGUAGE=de"}, "SimUnitMaxValuesProvider", "Clamps"), "Clamps");
  EXPECT_EQ(translated({"LANG=C.UTF-8", "LANGUAGE=de"}, "SimUnitMaxValuesProvider", "Clamps"), "Clamps");
  EXPECT_EQ(translated({"LANG=tlh"}, "SimUnitMaxValuesProvider", "Clamps"), "Clamps");
}

TEST(Translator, FindsTheCataloguesThatAreBuiltWithIt) {
  EXPECT_EQ(translated({"LANG=de_DE.UTF-8"}, "SimUnitMaxValuesProvider", "Clamps"), "Spanner");
  EXPECT_EQ(translated({"LANG=ja_JP.UTF-8"}, "SimUnitMaxValuesProvider", "Clamps"), "クランプ");
  EXPECT_EQ(translated({"LC_MESSAGES=ja", "LANG=de"}, "SimUnitMaxValuesProvider", "Clamps"), "クランプ");
  EXPECT_EQ(translated({"LANG=de"}, "SimUnitMaxValuesProvider", "clamps"), "clamps");
  EXPECT_EQ(translated({"LANG=de"}, "SimUnitMaxValuesProvider", ""), "");
}

TEST(Translator, FindsTheCataloguesThatAreInstalledWithIt) {
  Folder const prefix;
  for (auto const* part : {"host", "translations"}) {
    (void)outputOfCommand(
        "cmake -DCMAKE_INSTALL_PREFIX=" + quotedForShell(prefix.path().native()) + " -P " +
        quotedForShell(std::string(KESTREL_BINARY_DIR "/") + part + "/cmake_install.cmake"));
  }
  fs::path library;
  fs::path catalogue;
  for (auto const& entry : fs::recursive_directory_iterator(prefix.path())) {
    if (entry.path().filename() == "libKestrelHost.so.1") library = entry.path();
    if (entry.path().native().ends_with("/locale/de/LC_MESSAGES/kestrel.mo")) catalogue = entry.path();
  }
  ASSERT_FALSE(library.empty());
  ASSERT_FALSE(catalogue.empty());
  EXPECT_EQ(bytesOf(catalogue), bytesOf(KESTREL_BINARY_DIR "/translations/de/LC_MESSAGES/kestrel.mo"));

  Folder const other;
  fs::copy_file(other.compile(header + std::string(messages)), catalogue,
                fs::copy_options::overwrite_existing);
  EXPECT_EQ(translated({"LD_PRELOAD=" + library.native(), "LANG=de"}, "Other", "Clamps"), "Klammern");

  // Where it is built they have another place, which counts for languages that are not installed.
  auto const built = library.parent_path().parent_path() / "translations";
  for (auto const* language : {"de", "fr"}) {
    auto const folder = built / language / "LC_MESSAGES";
    fs::create_directories(folder);
    fs::copy_file(other.compile(header + std::string("msgctxt \"Other\"\nmsgid \"one\"\nmsgstr \"1\"\n")),
                  folder / "kestrel.mo");
  }
  EXPECT_EQ(translated({"LD_PRELOAD=" + library.native(), "LANG=de"}, "Other", "one"), "one");
  EXPECT_EQ(translated({"LD_PRELOAD=" + library.native(), "LANG=fr"}, "Other", "one"), "1");
}

TEST(Translator, TakesTheFirstLanguageThatHasTheText) {
  Folder const folder;
  (void)folder.compile(header + std::string("msgctxt \"A\"\nmsgid \"one\"\nmsgstr \"eins\"\n"
                                            "msgctxt \"A\"\nmsgid \"two\"\nmsgstr \"zwei\"\n"));
  (void)folder.compile(header + std::string("msgctxt \"A\"\nmsgid \"one\"\nmsgstr \"oans\"\n"), "de_AT");
  (void)folder.compile(header + std::string("msgctxt \"A\"\nmsgid \"one\"\nmsgstr \"\"\n"
                                            "msgctxt \"A\"\nmsgid \"three\"\nmsgstr \"trois\"\n"),
                       "fr");
  EXPECT_EQ(translated(inFolder(folder, {"LANG=de_AT.UTF-8"}), "A", "one"), "oans");
  EXPECT_EQ(translated(inFolder(folder, {"LANG=de_AT.UTF-8"}), "A", "two"), "zwei");
  EXPECT_EQ(translated(inFolder(folder, {"LANG=en", "LANGUAGE=fr:de"}), "A", "one"), "eins");
  EXPECT_EQ(translated(inFolder(folder, {"LANG=en", "LANGUAGE=fr:de"}), "A", "three"), "trois");
  EXPECT_EQ(translated(inFolder(folder, {"LANG=en", "LANGUAGE=fr:de"}), "A", "four"), "four");
}

TEST(Translator, TheVariableReplacesTheInstalledCatalogues) {
  Folder const folder;
  (void)folder.compile(header + std::string(messages));
  EXPECT_EQ(translated(inFolder(folder, {"LANG=de"}), "Family", "Clamps"), "Spanner ß");
  EXPECT_EQ(translated(inFolder(folder, {"LANG=de"}), "SimUnitMaxValuesProvider", "Clamps"), "Clamps");
  EXPECT_EQ(translated({"LANG=de", "KESTREL_LOCALEDIR="}, "SimUnitMaxValuesProvider", "Clamps"), "Spanner");
  EXPECT_EQ(translated({"LANG=de", "KESTREL_LOCALEDIR=/nowhere"}, "SimUnitMaxValuesProvider", "Clamps"),
            "Clamps");
}

TEST(Translator, TheCommentTellsEqualTextsApart) {
  Folder const folder;
  (void)folder.compile(header + std::string(messages));
  auto const environment = inFolder(folder, {"LANG=de"});
  EXPECT_EQ(translated(environment, "Family", "Clamps", "short"), "Sp.");
  EXPECT_EQ(translated(environment, "Family", "Clamps", "-"), "Spanner ß");
  EXPECT_EQ(translated(environment, "Family", "Clamps", "unknown comment"), "Spanner ß");
  EXPECT_EQ(translated(environment, "Nobody", "Clamps", "short"), "Clamps");
  EXPECT_EQ(translated(environment, "Family", "two\nlines", "-"), "two\nlines")
      << "has an entry with comment only";
}

TEST(Translator, TakesTheEntryWithoutCommentBeforeTheNextLanguage) {
  Folder const folder;
  (void)folder.compile(header + std::string("msgctxt \"A\"\nmsgid \"one\"\nmsgstr \"eins\"\n"
                                            "msgctxt \"A|short\"\nmsgid \"two\"\nmsgstr \"2\"\n"));
  (void)folder.compile(header + std::string("msgctxt \"A|short\"\nmsgid \"one\"\nmsgstr \"u.\"\n"
                                            "msgctxt \"A\"\nmsgid \"two\"\nmsgstr \"deux\"\n"),
                       "fr");
  auto const environment = inFolder(folder, {"LANG=en", "LANGUAGE=de:fr"});
  EXPECT_EQ(translated(environment, "A", "one", "short"), "eins");
  EXPECT_EQ(translated(environment, "A", "one"), "eins");
  EXPECT_EQ(translated(environment, "A", "two", "short"), "2");
  EXPECT_EQ(translated(environment, "A", "two"), "deux");
  EXPECT_EQ(translated(environment, "A|short", "two"), "2") << "the comment stands in the context";
}

TEST(Translator, TheCountChoosesThePluralForm) {
  Folder const folder;
  (void)folder.compile(header + std::string(messages));
  auto const environment = inFolder(folder, {"LANG=de"});
  EXPECT_EQ(translated(environment, "Family", "step", "-", 1), "krok");
  EXPECT_EQ(translated(environment, "Family", "step", "-", 3), "kroki");
  EXPECT_EQ(translated(environment, "Family", "step", "-", 0), "kroków");
  EXPECT_EQ(translated(environment, "Family", "step", "-", -1), "krok");
  EXPECT_EQ(translated(environment, "Family", "unknown", "-", 3), "unknown");
  EXPECT_EQ(translated(environment, "Family", "step", "short", 1), "kr.");
  EXPECT_EQ(translated(environment, "Family", "step", "short", 3), "ki.");
  EXPECT_EQ(translated(environment, "Family", "step", "other", 3), "kroki");
}

TEST(Translator, ADamagedCatalogueCountsAsEmpty) {
  Folder const folder;
  (void)folder.compile(header + std::string(messages));
  auto const damaged = folder.path() / "fr" / "LC_MESSAGES" / "kestrel.mo";
  write(damaged, "\xDE\x12\x04\x95 and then nothing of what should follow");
  auto const onlyFrench = inFolder(folder, {"LANG=fr"});
  EXPECT_EQ(translated(onlyFrench, "Family", "Clamps"), "Clamps");
  EXPECT_EQ(translated(inFolder(folder, {"LANG=fr", "LANGUAGE=fr:de"}), "Family", "Clamps"), "Spanner ß");
  fs::remove(damaged);
  fs::create_directory(damaged);
  EXPECT_EQ(translated(onlyFrench, "Family", "Clamps"), "Clamps");
}

TEST(Translator, TheLanguageIsTheOneOfTheStart) {
  EXPECT_EQ(outputOfThisProgram({"LANG=de"}, {"--change-language"}), "Spanner, Bolzen\n");
}

TEST(Translator, ManyThreadsTranslateAtOnce) {
  EXPECT_EQ(outputOfThisProgram({"LANG=de"}, {"--threads"}), "64 x Schließkraft\n");
}

// ---- texts with placeholders

TEST(ArgString, ReplacesEveryPlaceholder) {
  EXPECT_EQ(std::string(ArgString("%1Teaching %1X").arg("Δ")), "ΔTeaching ΔX");
  EXPECT_EQ(std::string(ArgString("%1%1").arg("ab")), "abab");
  EXPECT_EQ(std::string(ArgString("%1").arg("")), "");
}

TEST(ArgString, LeavesOtherTextsAlone) {
  EXPECT_EQ(std::string(ArgString("").arg("x")), "");
  EXPECT_EQ(std::string(ArgString("100 % 1 %2 %%").arg("x")), "100 % 1 %2 %%");
  EXPECT_EQ(std::string(ArgString("%1X")), "%1X");
}

TEST(ArgString, DoesNotReplaceInWhatItInserts) {
  EXPECT_EQ(std::string(ArgString("%1X").arg("%1%1")), "%1%1X");
  EXPECT_EQ(std::string(ArgString("%%11").arg("%1")), "%%11");
}

TEST(ArgString, MakesANewText) {
  ArgString const open("%1X");
  EXPECT_EQ(std::string(open.arg("a")), "aX");
  EXPECT_EQ(std::string(open), "%1X");
}

TEST(TranslatorArg, TranslatesBeforeItReplaces) {
  EXPECT_EQ(outputOfThisProgram({"LANG=de"}, {"--placeholder"}), "Teachen %1X, Teachen ΔX\n");
  EXPECT_EQ(outputOfThisProgram({}, {"--placeholder"}), "Teaching %1X, Teaching ΔX\n");
}

// ---- what the new processes do

void printPlaceholder() {
  auto const text =
      TranslatorArg::translate("TablePropertySettings", "Teaching %1X", "Property display name", -1);
  std::cout << std::string(text) << ", " << std::string(text.arg("Δ")) << '\n';
}

void changeLanguage() {
  std::cout << Translator::translate("SimUnitMaxValuesProvider", "Clamps", nullptr, -1);
  ::setenv("LANG", "ja", 1);
  std::cout << ", " << Translator::translate("SimUnitMaxValuesProvider", "Bolts", nullptr, -1) << '\n';
}

void translateInThreads() {
  Strings texts(64);
  std::vector<std::thread> threads;
  for (auto& text : texts) {
    threads.emplace_back([&text] {
      text = Translator::translate("TablePropertySettings", "Closing Force", "Property display name", -1);
    });
  }
  for (auto& thread : threads) thread.join();
  std::cout << std::count(texts.begin(), texts.end(), texts.front()) << " x " << texts.front() << '\n';
}

}  // namespace
}  // namespace Kestrel

int main(int argc, char** argv) {
  std::string const task = argc > 1 ? argv[1] : "";
  if (task == "--translate" && argc == 6) {
    char const* comment = std::string(argv[4]) == "-" ? nullptr : argv[4];
    std::cout << Kestrel::Translator::translate(argv[2], argv[3], comment, std::stoi(argv[5]));
  } else if (task == "--placeholder") {
    Kestrel::printPlaceholder();
  } else if (task == "--change-language") {
    Kestrel::changeLanguage();
  } else if (task == "--threads") {
    Kestrel::translateInThreads();
  } else {
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
  }
  return 0;
}
