// Making a model from a document, compared with a bare pre-scan and parse of the same bytes.
//
// The factory's own time is what it takes beyond those.  Own time per bare time shows what translation costs,
// own time per byte of documents of different sizes that it grows with the document and not faster.

#ifndef VEYRA_BENCH_LOADING_H_
#define VEYRA_BENCH_LOADING_H_

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "Comparison.h"
#include "veyra/ModelFactory.h"
#include "xml/KxXInputSource.h"
#include "xml/ParserLimits.h"
#include "xml/ScoreSax2Parser.h"

namespace VeyraBench {

struct Load {
  const char* name;
  int size;  // of the document, in its maker's units
  int iterations;
  double ownPerBare = 0;
  double ownPerByte = 0;
  double release = 0;
};

inline void ParseBare(std::istream& in) {
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

using Model = std::unique_ptr<KxVeyra_940::ScoreModel>;

inline Model MakeModel(std::istream& in, const std::string& modelName) {
  return Model(KxVeyra_940::ModelFactory::MakeModelFromXML(in, modelName));
}

// `text` was checked to give right answers.
inline void MeasureLoading(benchmark::State& state, const std::string& text, const std::string& modelName,
                           Load& load) {
  std::istringstream in(text);
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
    const double total = SecondsOf([&] { model = MakeModel(in, modelName); });
    own.push_back(total - bare.back());
    release.push_back(SecondsOf([&] { model.reset(); }));
    state.SetIterationTime(total);
  }
  const auto bytes = static_cast<double>(text.size());
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

// Registers a benchmark for each of `loads`, which outlive it.
template <class MeasureLoad>
void RegisterLoading(std::vector<Load>& loads, MeasureLoad measure) {
  for (Load& load : loads) {
    benchmark::RegisterBenchmark(load.name,
                                 [&load, measure](benchmark::State& state) { measure(state, load); })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(load.iterations);
  }
}

inline void PrintLoading(const std::string& what, const std::vector<Load>& loads, double ownLimit,
                         double growthLimit) {
  std::vector<const Load*> smallerOnes;
  for (const Load& load : loads) {
    if (load.ownPerByte == 0) continue;  // filtered out
    const std::string name = what + " " + load.name;
    PrintRatio(name + ": own time / bare parse", load.ownPerBare, ownLimit);
    PrintRatio(name + ": release of the model / bare parse", load.release);
    for (const Load* smaller : smallerOnes) {
      PrintRatio(name + ": own time per byte / that of " + smaller->name,
                 load.ownPerByte / smaller->ownPerByte, growthLimit);
    }
    smallerOnes.push_back(&load);
  }
}

}  // namespace VeyraBench

#endif  // VEYRA_BENCH_LOADING_H_
