// Documents of nearest-neighbour models over a few instances, for tests.

#ifndef VEYRA_TESTS_PLUGINS_NEIGHBORDOCUMENT_H_
#define VEYRA_TESTS_PLUGINS_NEIGHBORDOCUMENT_H_

#include <string>

#include "plugins/Scoring.h"

namespace VeyraTest {

inline const char* const kNeighborModel = "NearestNeighborModel";

inline const char* const kNeighborFields =
    "<DataField name='x' optype='continuous' dataType='double'>"
    "<Interval closure='closedClosed' leftMargin='-1000' rightMargin='1000'/>"
    "<Value value='-99' property='missing'/></DataField>"
    "<DataField name='z' optype='continuous' dataType='double'/>"
    "<DataField name='c' optype='categorical' dataType='string'><Value value='a'/><Value "
    "value='b'/></DataField>"
    "<DataField name='free' optype='categorical' dataType='string'/>"
    "<DataField name='day' optype='continuous' dataType='date'/>"
    "<DataField name='id' optype='categorical' dataType='string'/>"
    "<DataField name='y' optype='continuous' dataType='double'/>"
    "<DataField name='k' optype='categorical' dataType='string'>"
    "<Value value='yes' displayValue='Yes!'/><Value value='no'/></DataField>"
    "<DataField name='n' optype='categorical' dataType='integer'/>";

// The instances A to D.  The cells that are left out are missing.
inline const char* const kNeighborRows =
    "<row><id>A</id><x>0</x><z>0</z><c>a</c><free>p</free><day>2020-01-01</day><y>10</y><k>yes</k><n>3</n></"
    "row>"
    "<row><id>B</id><x>3</x><z>4</z><c>b</c><free>q</free><day>2020-01-11</day><y>20</y><k>no</k><n>2</n></"
    "row>"
    "<row><id>C</id><x>6</x><z>8</z><c>a</c><free>r</free><day>1581120000</day><y>40</y><k>no</k><n>2</n></"
    "row>"
    "<row><id>D</id><x>-3</x><z>4</z><y>80</y><k>yes</k><n>10</n></row>";

struct NeighborDocument {
  std::string inputs = "<KNNInput field='x'/><KNNInput field='z'/>";
  std::string measure = "<cityBlock/>";
  std::string comparison = "kind='distance'";
  std::string attributes = "functionName='clustering' numberOfNeighbors='4'";
  std::string targets = "";  // mining fields
  std::string content = "";  // before the instances
  std::string rows = std::string("<InlineTable>") + kNeighborRows + "</InlineTable>";
  std::string instances = "";  // attributes
  std::string last = "";       // behind the inputs
  std::string schema =
      "<MiningField name='x'/><MiningField name='z'/><MiningField name='c' invalidValueTreatment='asIs'/>"
      "<MiningField name='free'/><MiningField name='day'/>";

  std::string Text() const {
    std::string fields;
    for (const char* name : {"id", "x", "z", "c", "free", "day", "y", "k", "n"})
      fields.append("<InstanceField field='").append(name).append("' column='").append(name).append("'/>");
    return std::string("<PMML version='4.4'><Header/><DataDictionary numberOfFields='9'>") + kNeighborFields +
           "</DataDictionary><NearestNeighborModel instanceIdVariable='id' " + attributes +
           "><MiningSchema>" + schema + targets + "</MiningSchema>" + content + "<TrainingInstances " +
           instances + "><InstanceFields>" + fields + "</InstanceFields>" + rows +
           "</TrainingInstances><ComparisonMeasure " + comparison + ">" + measure +
           "</ComparisonMeasure><KNNInputs>" + inputs + "</KNNInputs>" + last +
           "</NearestNeighborModel></PMML>";
  }
};

}  // namespace VeyraTest

#endif  // VEYRA_TESTS_PLUGINS_NEIGHBORDOCUMENT_H_
