// Reads the baseline hazards of a Cox model, in the standard's form or as the extensions of older documents:
//
//   <BaseCumHazardTables maxTime="100">              <Extension name="X-BaseCumHazardTables">
//     <BaselineStratum value="1" maxTime="90">         <X-BaseCumHazardTable>
//       <BaselineCell time="3" cumHazard="0.1"/>         <X-Stratum varName="sex" value="1"/>
//     </BaselineStratum>                                 <X-BaseMaxTime value="90"/>
//   </BaseCumHazardTables>                               <X-Baseline time="3" cumHazard="0.1"/>

#ifndef VEYRA_PLUGINS_GENERALREGRESSION_HAZARDREADER_H_
#define VEYRA_PLUGINS_GENERALREGRESSION_HAZARDREADER_H_

#include <xercesc/dom/DOMElement.hpp>

#include "generalregression/Hazards.h"

namespace KxVeyra_940::Plugin {

class GeneralRegressionTranslator;
class PluginModel;

struct BaselineHazards {
  Hazards hazards;
  int timeInput = -1;
  int strataInput = -1;  // -1: one table for all cases
};

// Reads them and marks the inputs of time and stratum.  Also reads what the element says besides about
// survival and that plays no part in a case.  Raises 260120 for an attribute that is missing, 260174 without
// tables, 260115, 260216 and 260283 for their content, 260203 for a stratum or a time given twice, 260183 for
// a negative hazard, 260258 for one that falls, and what the readers of fields raise.
BaselineHazards ReadHazards(GeneralRegressionTranslator& translator, const xercesc::DOMElement& element,
                            PluginModel& model);

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_GENERALREGRESSION_HAZARDREADER_H_
