// What a document says about itself: its writer, its models, what goes in and what comes out, as it is
// written. Nothing is translated, so that documents that the library refuses can be looked at as well.

#ifndef VEYRA_TOOLS_DOCUMENTSUMMARY_H_
#define VEYRA_TOOLS_DOCUMENTSUMMARY_H_

#include <string>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

namespace VeyraTool {

struct ValueSummary {
  std::string value;
  std::string label;  // empty when there is none
};

struct IntervalSummary {
  std::string closure;
  std::string left;  // empty: no bound
  std::string right;

  std::string GetText() const;  // "[1, 10)"
};

struct FieldSummary {
  std::string name;
  std::string label;
  std::string type;
  std::string level;
  std::string role;  // of the first model: "active", "target", ...; empty when the model does not have it
  std::vector<ValueSummary> valid;
  std::vector<std::string> missing;
  std::vector<std::string> invalid;
  std::vector<IntervalSummary> intervals;
};

struct DerivedFieldSummary {
  std::string name;
  std::string type;
  std::string level;
  std::string expression;  // the element
};

struct OutputSummary {
  std::string name;
  std::string feature;
  std::string value;  // of the category that it is about
  std::string type;
  std::string rank;    // of the entity that it is about
  std::string target;  // the field that it is about, where there are several

  // "probability of good", "entityId of rank 2", "predictedValue for height".
  std::string GetText() const;
};

struct ModelSummary {
  std::string kind;
  std::string name;
  std::string function;
  std::string algorithm;
  std::string type;  // of those that come in several
};

struct DocumentSummary {
  std::string root;
  std::string version;
  std::string application;
  std::string applicationVersion;
  std::string description;
  std::string timestamp;
  std::vector<ModelSummary> models;  // children of the root
  std::vector<FieldSummary> fields;
  std::vector<DerivedFieldSummary> derivedFields;
  std::vector<OutputSummary> outputs;  // of the first model
};

DocumentSummary Summarise(const xercesc::DOMElement& root);

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_DOCUMENTSUMMARY_H_
