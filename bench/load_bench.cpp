// Making a model from a document, compared with a bare pre-scan and parse of the same bytes.
//
// The factory's own time is what it takes beyond those.  Own time per bare time shows what translation costs,
// own time per byte of documents of different sizes that it grows with the document and not faster.

#include <cmath>
#include <memory>
#include <sstream>
#include <vector>

#include "Comparison.h"
#include "RegressionDocument.h"
#include "data/CaseRecord.h"
#include "veyra/ModelFactory.h"
#include "veyra/VYException.h"
#include "xml/KxXInputSource.h"
#include "xml/ParserLimits.h"
#include "xml/ScoreSax2Parser.h"

namespace {

using namespace VeyraBench;
using KxVeyra_940::CaseRecord;
using KxVeyra_940::ModelFactory;
using KxVeyra_940::ScoreModel;
using KxVeyra_940::ScoreResult;
using Model = std::unique_ptr<ScoreModel>;

constexpr double kOwnLimit = 0.25;
constexpr double kGrowthLimit = 1.2;

struct Load {
  const char* name;
  int groups;
  int iterations;
  double ownPerBare = 0;
  double ownPerByte = 0;
  double release = 0;
};

void ParseBare(std::istream& in) {
  KxVeyra_940::ScoreSax2Parser::IsModelType("NearestNeighborModel", in);
  in.clear();
  in.seekg(0);
  const KxXML_940::KxXInputSource source(in);
  KxXML_940::ParseErrorRecorder errors;
  KxXML_940::LimitedDOMParser parser;
  parser.setLoadExternalDTD(false);
  parser.setValidationScheme(xercesc::XercesDOMParser::Val_Never);
  parser.setErrorHandler(&errors);
  parser.parse(source);
  Require(!errors.HasFatalError() && parser.getDocument()->getDocumentElement() != nullptr, "bare parse");
}

Model MakeModel(std::istream& in) { return Model(ModelFactory::MakeModelFromXML(in, "RegressionModel")); }

// All numbers 1.5, all categories the first one.
void CheckAnswer(const RegressionDocument& document, ScoreModel& model) {
  double expected = document.Intercept();
  CaseRecord record;
  for (std::size_t i = 0; i < document.Coefficients().size(); ++i) {
    record.Add(RegressionDocument::NumberName(i), nullptr);
    record.SetValue(RegressionDocument::NumberName(i), 1.5);
    expected += 1.5 * document.Coefficients()[i];
  }
  for (std::size_t i = 0; i < document.Categories().size(); ++i) {
    record.Add(RegressionDocument::CategoryName(i), nullptr);
    record.SetValue(RegressionDocument::CategoryName(i), document.Categories()[i].front().text);
    expected += document.Categories()[i].front().coefficient;
  }
  Require(model.PrepareForCases(record).IsOK(), "layout");
  const std::unique_ptr<ScoreResult> result(model.NewResult());
  Require(model.Score(record, *result).IsOK(), "status");
  Require(std::fabs(result->GetPredictedValue()->GetDouble() - expected) < 1e-6, "prediction");
}

void Measure(benchmark::State& state, Load& load) {
  const RegressionDocument document(load.groups, true);
  std::istringstream in(document.Text());
  CheckAnswer(document, *MakeModel(in));
  std::vector<double> bare;
  std::vector<double> own;
  std::vector<double> release;
  for ([[maybe_unused]] const auto iteration : state) {
    in.clear();
    in.seekg(0);
    bare.push_back(SecondsOf([&] { ParseBare(in); }));
    in.clear();
    in.seekg(0);
    Model model;
    const double total = SecondsOf([&] { model = MakeModel(in); });
    own.push_back(total - bare.back());
    release.push_back(SecondsOf([&] { model.reset(); }));
    state.SetIterationTime(total);
  }
  const auto bytes = static_cast<double>(document.Text().size());
  load.ownPerBare = Median(own) / Median(bare);
  load.ownPerByte = Median(own) / bytes;
  load.release = Median(release) / Median(bare);
  state.counters["MB"] = bytes / 1e6;
  state.counters["bare_ms"] = 1e3 * Median(bare);
  state.counters["own_ms"] = 1e3 * Median(own);
  state.counters["own/bare"] = load.ownPerBare;
  state.counters["own_ns/byte"] = 1e9 * load.ownPerByte;
  state.counters["release/bare"] = load.release;
}

void Print(const Load& load, const std::vector<const Load*>& smallerOnes) {
  const std::string name = "load " + std::string(load.name);
  PrintRatio(name + ": own time / bare parse", load.ownPerBare, kOwnLimit);
  PrintRatio(name + ": release of the model / bare parse", load.release);
  for (const Load* smaller : smallerOnes) {
    PrintRatio(name + ": own time per byte / that of " + smaller->name, load.ownPerByte / smaller->ownPerByte,
               kGrowthLimit);
  }
}

}  // namespace

int main(int argc, char** argv) try {
  ModelFactory::Initialize("");
  benchmark::Initialize(&argc, argv);
  std::vector<Load> loads = {{"10 kB", 3, 500}, {"1 MB", 325, 45}, {"50 MB", 16000, 7}};
  for (Load& load : loads) {
    benchmark::RegisterBenchmark(load.name, [&load](benchmark::State& state) { Measure(state, load); })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(load.iterations);
  }
  benchmark::RunSpecifiedBenchmarks();
  std::vector<const Load*> smallerOnes;
  for (const Load& load : loads) {
    if (load.ownPerByte == 0) continue;  // filtered out
    Print(load, smallerOnes);
    smallerOnes.push_back(&load);
  }
  ModelFactory::Terminate();
} catch (const KxVeyra_940::VYException& e) {
  std::fprintf(stderr, "%s\n", e.GetErrorMessage().c_str());
  return EXIT_FAILURE;
}
