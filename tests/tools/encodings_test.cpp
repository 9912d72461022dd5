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
  const char* what;
  const char* number;
  const char* category;
  const char* first;
  const char* second;
  const char* output;
  std::vector<const char*> encodings;
};

std::string Document(const Names& names, const char* encoding) {
  const std::string number = names.number;
  const std::string category = names.category;
  return std::string("<?xml version='1.0' encoding='") + encoding +
         "'?><PMML version='4.4'><DataDictionary numberOfFields='2'><DataField name='" + number +
         "' optype='continuous' dataType='double'/><DataField name='" + category +
         "' optype='categorical' dataType='string'><Value value='" + names.first + "'/><Value value='" +
         names.second + "'/></DataField></DataDictionary><RegressionModel functionName='classification'" +
         " normalizationMethod='cauchit'><MiningSchema><MiningField name='" + number +
         "'/><MiningField name='" + category +
         "' usageType='target'/></MiningSchema><Output><OutputField name='" + names.output +
         "' feature='probability' value='" + names.second + "'/></Output><RegressionTable intercept='0' " +
         "targetCategory='" + names.first + "'><NumericPredictor name='" + number +
         "' coefficient='1'/></RegressionTable><RegressionTable intercept='0' targetCategory='" +
         names.second + "'/></RegressionModel></PMML>";
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
    const std::string data = std::string(names.number) + "\n1\n-1\n";
    const std::string quoted = std::string(names.second).find(',') == std::string::npos
                                   ? std::string(names.second)
                                   : "\"" + std::string(names.second) + "\"";
    const std::string probability = "probability(" + std::string(names.second) + ")";
    const std::string want =
        std::string(names.category) + ",probability(" + names.first + ")," +
        (probability.find(',') == std::string::npos ? probability : "\"" + probability + "\"") + "," +
        names.output + "\n" + names.first + ",0.75,0.25,0.25\n" + quoted + ",0.25,0.75,0.75\n";
    for (const char* encoding : names.encodings) {
      SCOPED_TRACE(std::string(names.what) + " in " + encoding);
      // The parser wants a byte order mark where the document says "UTF-16", and none where it says the
      // order.
      const std::string model =
          files.Write(std::string(names.number) + ".pmml", Encode(Document(names, encoding), encoding));
      const std::string rows = files.Write(std::string(names.category) + ".csv", Encode(data, encoding));
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
  const std::string field = "<MiningField name='" + std::string(names.number) + "'/>";
  document.replace(document.find(field), field.size(), "<MiningField name='性別'/>");
  const std::string model = files.Write("モデル.pmml", Encode(document, "Shift_JIS"));
  EXPECT_EQ(
      RunProgram({"score", model}).err,
      "veyra: " + model + ": error 260124: Missing variable:'性別' definition in the 'DataDictionary'.\n");
  EXPECT_EQ(RunProgram({"score", files.Path("無い.pmml")}).err,
            "veyra: " + files.Path("無い.pmml") + ": error 260104: Unexpected error in opening PMML file: '" +
                files.Path("無い.pmml") + "'.\n");
}

}  // namespace
