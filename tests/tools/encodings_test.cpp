// Names that are not ASCII, all the way: fields, categories and files in Japanese, Greek and with combining
// marks, documents and data in several encodings.

#include <unicode/ucnv.h>

#include "tools/RunProgram.h"

namespace {

using namespace VeyraTest;

// From UTF-8.  A converter of UTF-16 writes a byte order mark.
std::string Encode(const std::string& text, const char* encoding) {
  std::string encoded(4 * text.size() + 16, '\0');
  UErrorCode status = U_ZERO_ERROR;
  const int size = ucnv_convert(encoding, "UTF-8", encoded.data(), static_cast<int>(encoded.size()),
                                text.data(), static_cast<int>(text.size()), &status);
  EXPECT_TRUE(U_SUCCESS(status)) << encoding;
  encoded.resize(static_cast<std::size_t>(size));
  return encoded;
}

struct Names {
  std::string what, number, category, first, second, output;
  std::vector<const char*> encodings;
};

std::string Document(const Names& names, const std::string& encoding) {
  std::string text =
      "<?xml version='1.0' encoding='" + encoding +
      "'?><PMML version='4.4'><DataDictionary numberOfFields='2'>"
      "<DataField name='NUMBER' optype='continuous' dataType='double'/>"
      "<DataField name='CATEGORY' optype='categorical' dataType='string'><Value value='FIRST'/>"
      "<Value value='SECOND'/></DataField></DataDictionary>"
      "<RegressionModel functionName='classification' normalizationMethod='cauchit'>"
      "<MiningSchema><MiningField name='NUMBER'/><MiningField name='CATEGORY' usageType='target'/>"
      "</MiningSchema><Output><OutputField name='OUTPUT' feature='probability' value='SECOND'/></Output>"
      "<RegressionTable intercept='0' targetCategory='FIRST'><NumericPredictor name='NUMBER' "
      "coefficient='1'/>"
      "</RegressionTable><RegressionTable intercept='0' targetCategory='SECOND'/></RegressionModel></PMML>";
  const auto put = [&text](const std::string& place, const std::string& name) {
    for (std::size_t at; (at = text.find(place)) != std::string::npos;) text.replace(at, place.size(), name);
  };
  put("NUMBER", names.number);
  put("CATEGORY", names.category);
  put("FIRST", names.first);
  put("SECOND", names.second);
  put("OUTPUT", names.output);
  return text;
}

const Names kNames[] = {
    {"Japanese", "年齢", "職業", "会社員", "学生,院生", "確率", {"UTF-8", "UTF-16", "UTF-16LE", "Shift_JIS"}},
    {"Greek", "ηλικία", "επάγγελμα", "μισθωτός", "φοιτητής", "πιθανότητα", {"UTF-8", "UTF-16", "ISO-8859-7"}},
    {"Latin", "âge", "métier", "employé", "étudiant", "probabilité", {"UTF-8", "UTF-16", "ISO-8859-1"}},
    {"combining marks",
     "a\xCC\x82ge",
     "me\xCC\x81tier",
     "e\xCC\x81leve",
     "o\xCC\x88",
     "p\xCC\x83",
     {"UTF-8", "UTF-16"}},
};

TEST(Encodings, NamesGoAllTheWay) {
  for (const Names& names : kNames) {
    const TemporaryDirectory files;
    const std::string data = names.number + "\n1\n-1\n";
    const std::string quote = names.second.find(',') == std::string::npos ? "" : "\"";
    const std::string want = names.category + ",probability(" + names.first + ")," + quote + "probability(" +
                             names.second + ")" + quote + "," + names.output + "\n" + names.first +
                             ",0.75,0.25,0.25\n" + quote + names.second + quote + ",0.25,0.75,0.75\n";
    for (const char* encoding : names.encodings) {
      SCOPED_TRACE(names.what + " in " + encoding);
      // The parser wants a byte order mark where the document says "UTF-16", and none where it says the
      // order.
      const std::string model =
          files.Write(names.number + ".pmml", Encode(Document(names, encoding), encoding));
      const std::string rows = files.Write(names.category + ".csv", Encode(data, encoding));
      const ProgramRun run = RunProgram({"score", model, rows, "--encoding", encoding});
      EXPECT_EQ(run.err, "");
      EXPECT_EQ(run.out, want);
    }
  }
}

TEST(Encodings, RefusalsNameFieldsInUTF8) {
  const TemporaryDirectory files;
  const Names& names = kNames[0];
  std::string document = Document(names, "Shift_JIS");
  const std::string field = "<MiningField name='" + names.number + "'/>";
  document.replace(document.find(field), field.size(), "<MiningField name='性別'/>");
  const std::string model = files.Write("モデル.pmml", Encode(document, "Shift_JIS"));
  EXPECT_EQ(RunProgram({"score", model}).err,
            "veyra: " + model +
                ": error 260124: Missing variable:'性別' definition in the 'DataDictionary'.\n" +
                "veyra: " + model + ": in /PMML/RegressionModel/MiningSchema/MiningField[@name='性別']\n");
  EXPECT_EQ(RunProgram({"score", files.Path("無い.pmml")}).err,
            "veyra: " + files.Path("無い.pmml") + ": error 260104: Unexpected error in opening PMML file: '" +
                files.Path("無い.pmml") + "'.\n");
}

}  // namespace
