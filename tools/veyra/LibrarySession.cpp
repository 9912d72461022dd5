#include "veyra/LibrarySession.h"

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <vector>

#include "translate/DomReader.h"
#include "veyra/Adaptations.h"
#include "veyra/ElementPath.h"
#include "veyra/Failures.h"
#include "veyra/MemoryStream.h"
#include "veyra/ModelFactory.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/ZENTModelTags.h"
#include "xml/ScoreSax2Parser.h"

namespace VeyraTool {

namespace Tags = KxVeyra_940::PMMLModelTags;
using KxVeyra_940::ModelFactory;
using KxVeyra_940::ScoreModel;
using KxVeyra_940::VYException;

namespace {

constexpr int kNewestMajor = 4;
constexpr int kNewestMinor = 4;

// The catalogue that is installed beside this program.
std::string InstalledCatalog() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  return (program.parent_path().parent_path() / "share" / "veyra" / "modeldll.txt").string();
}

// Whether the text can hold the element at all: documents of other encodings than those that extend ASCII,
// and those that declare entities, are looked at by the parser.
bool MayHold(std::string_view text, std::string_view tag) {
  return text.find('\0') != std::string_view::npos || text.find_first_of("<\xEF \n\r\t") != 0 ||
         text.find(tag) != std::string_view::npos || text.find("<!ENTITY") != std::string_view::npos;
}

bool HoldsLag(std::string_view text) {
  if (!MayHold(text, Tags::XML_ELE_LAG)) return false;
  MemoryStream in(text);
  return KxVeyra_940::ScoreSax2Parser::IsModelType(Tags::XML_ELE_LAG, in);
}

// One line when the document says that it is newer than what the library knows.
void WarnOfVersion(const std::string& path, std::string_view text, const ScoreModel& model) {
  if (model.GetVersionInfo() == nullptr) return;
  const std::string& version = model.GetVersionInfo()->GetVersionInfo();
  int major = 0;
  int minor = 0;
  const char* const end = version.data() + version.size();
  const auto [dot, error] = std::from_chars(version.data(), end, major);
  if (error == std::errc() && dot != end && *dot == '.') std::from_chars(dot + 1, end, minor);
  if (major < kNewestMajor || (major == kNewestMajor && minor <= kNewestMinor)) return;
  // The versions of the other format are its own.
  MemoryStream in(text);
  if (KxVeyra_940::ScoreSax2Parser::IsModelType(KxVeyra_940::ZENTModelTags::XML_ELE_ZENTML, in)) return;
  std::fprintf(stderr,
               "veyra: %s: warning: version %s is newer than PMML %d.%d, which is all that is known here\n",
               path.c_str(), version.c_str(), kNewestMajor, kNewestMinor);
}

// One line when a path was given that the model has no use for.
void WarnOfAuxPath(const std::string& path, const std::string& auxPath, const ScoreModel& model) {
  if (auxPath.empty() || model.GetModelKind() == Tags::XML_ELE_KNNMODEL) return;
  std::fprintf(stderr, "veyra: %s: warning: a %s does not use --aux\n", path.c_str(),
               model.GetModelKind().c_str());
}

}  // namespace

std::string ChooseCatalog(const std::string& path) {
  if (!path.empty()) return path;
  std::error_code error;
  if (std::filesystem::exists("modeldll.txt", error)) return "modeldll.txt";
  return InstalledCatalog();
}

std::string RefusalText(const VYException& exception) {
  return "error " + std::to_string(exception.GetErrorCode()) + ": " + exception.GetErrorMessage();
}

namespace {

using Build = std::function<void(std::string_view)>;

constexpr int kUnsupportedValueCode = 260303;

// What becomes of a refused document when it is adapted: one line, or nothing.
std::string DescribeAdapted(const ParsedDocument& document, const std::string& refusal, const Build& build) {
  const std::vector<Applied> adapted = Adapt(*document.GetRoot()->getOwnerDocument());
  if (adapted.empty()) return {};
  std::string names;
  for (const Applied& one : adapted) names.append(names.empty() ? "" : "; ").append(Describe(one));
  try {
    build(document.Serialise());
    return "--lenient would let it through (" + names + ")";
  } catch (const VYException& exception) {
    if (RefusalText(exception) == refusal) return {};
    return "with --lenient (" + names + ") it would be refused all the same: " + RefusalText(exception);
  }
}

// A call of a function that the document defines itself, which the library does not read.
std::string DescribeOwnFunction(const xercesc::DOMElement& root, const VYException& exception) {
  if (exception.GetErrorCode() != kUnsupportedValueCode || exception.GetErrors().empty()) return {};
  const std::vector<std::string>& arguments = exception.GetErrors().back().arguments;
  if (arguments.size() != 2 || arguments[1] != Tags::XML_ATT_APPLY_FUNCTION) return {};
  bool isDefined = false;
  KxVeyra_940::ForEachElementBelow(
      root, Tags::XML_ELE_DEFINEFUNCTION, [&](const xercesc::DOMElement& element) {
        isDefined = isDefined || KxVeyra_940::OptionalText(element, Tags::XML_ATT_NAME) == arguments[0];
      });
  return isDefined
             ? "the document defines '" + arguments[0] + "' itself (DefineFunction), which is not supported"
             : std::string();
}

}  // namespace

std::string ExplainRefusal(const DocumentFile& file, const VYException& exception, bool isLenient,
                           const Build& build) {
  const std::string& path = file.path;
  std::string text = path + ": " + RefusalText(exception);
  const auto addLine = [&](const std::string& line) {
    if (!line.empty()) text.append("\nveyra: ").append(path).append(": ").append(line);
  };
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return text;
  const ParsedDocument document(file, ParsedDocument::Extent::kWhole);
  addLine(document.GetFault());
  if (document.GetRoot() == nullptr) return text;
  // With --lenient the place is that of the adapted document, whose paths are the same.
  if (isLenient) Adapt(*document.GetRoot()->getOwnerDocument());
  const xercesc::DOMElement* element = FindRefused(*document.GetRoot(), exception);
  if (element != nullptr) addLine("in " + PathOf(*element));
  addLine(DescribeOwnFunction(*document.GetRoot(), exception));
  if (!isLenient) addLine(DescribeAdapted(document, RefusalText(exception), build));
  return text;
}

LibrarySession::LibrarySession(const std::string& catalogPath) : fCatalogPath(ChooseCatalog(catalogPath)) {
  try {
    ModelFactory::Initialize(fCatalogPath);
  } catch (const VYException& exception) {
    throw CommandFailure(kModelRefused, fCatalogPath + ": " + RefusalText(exception));
  }
}

LibrarySession::~LibrarySession() { ModelFactory::Terminate(); }

std::unique_ptr<ScoreModel> LibrarySession::MakeModel(std::string_view text,
                                                      const std::string& auxPath) const {
  MemoryStream in(text);
  return std::unique_ptr<ScoreModel>(
      ModelFactory::MakeModelFromXML(in, ModelFactory::fModelNames, std::string(), auxPath));
}

std::unique_ptr<ScoreModel> LibrarySession::MakeModelOfFile(const DocumentFile& file,
                                                            const std::string& auxPath) const {
  if (IsPacked(file.path)) return MakeModel(ReadWhole(file), auxPath);
  return std::unique_ptr<ScoreModel>(
      ModelFactory::MakeModelFromXML(file.path, fCatalogPath, std::string(), auxPath));
}

LoadedModel LibrarySession::LoadModel(const DocumentFile& file, const std::string& auxPath,
                                      bool isLenient) const {
  const std::string& path = file.path;
  LoadedModel loaded;
  try {
    std::vector<Applied> adapted;
    std::string text;
    if (isLenient) {
      const ParsedDocument document(file, ParsedDocument::Extent::kWhole);
      if (document.GetRoot() != nullptr) adapted = Adapt(*document.GetRoot()->getOwnerDocument());
      if (!adapted.empty()) text = document.Serialise();
    }
    for (const Applied& one : adapted) {
      std::fprintf(stderr, "veyra: %s: adapted: %s\n", path.c_str(), Describe(one).c_str());
    }
    loaded.model = text.empty() ? MakeModelOfFile(file, auxPath) : MakeModel(text, auxPath);
    if (loaded.model == nullptr) throw CommandFailure(kModelRefused, path + ": the plug-in built no model");
    if (text.empty()) text = ReadWhole(file);
    loaded.keepsHistory = HoldsLag(text);
    WarnOfVersion(path, text, *loaded.model);
  } catch (const VYException& exception) {
    throw CommandFailure(kModelRefused,
                         ExplainRefusal(file, exception, isLenient,
                                        [&](std::string_view document) { MakeModel(document, auxPath); }));
  }
  WarnOfAuxPath(path, auxPath, *loaded.model);
  return loaded;
}

}  // namespace VeyraTool
