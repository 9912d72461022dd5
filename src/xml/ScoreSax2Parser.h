// The pre-scan: whether a document holds a model element of a given name, without building a tree.
//
//   const bool isNeighbour = ScoreSax2Parser::IsModelType(PMMLModelTags::XML_ELE_..., in);

#ifndef VEYRA_XML_SCORESAX2PARSER_H_
#define VEYRA_XML_SCORESAX2PARSER_H_

#include <istream>
#include <string>

#include "veyra/Export.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreSax2Parser {
 public:
  ScoreSax2Parser();
  ~ScoreSax2Parser();

  // True when an element of exactly that qualified name starts before the end tag "PMML" (or before the end
  // of a document with another root).  False for everything that cannot be parsed, and for elements more than
  // 1000 deep.  The stream is left where the scan stopped.  Nothing is fetched for the document, and the text
  // that its entities may grow to is bounded. REQUIRES: the parser platform is up.
  static bool IsModelType(const std::string& modelType, std::istream& in);
};

}  // namespace KxVeyra_940

#endif  // VEYRA_XML_SCORESAX2PARSER_H_
