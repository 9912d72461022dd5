// Derived fields that sort numbers into bins.

#include <algorithm>
#include <memory>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>

#include "data/NumericValue.h"
#include "data/Range.h"
#include "data/StringValue.h"
#include "error/Raise.h"
#include "transform/TransformVar.h"
#include "translate/DomReader.h"
#include "translate/PMMLTranslator.h"
#include "vocabulary/PMMLModelTags.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

namespace {

using namespace PMMLModelTags;
using KxXML_940::EqualsAscii;
using KxXML_940::ToUTF8;
using xercesc::DOMElement;

struct ClosureRow {
  const char* text;
  bool lowIncluded;
  bool highIncluded;
};
constexpr ClosureRow kClosures[] = {
    {XML_VAL_CLOSURE_CLOSEDCLOSED, true, true},
    {XML_VAL_CLOSURE_CLOSEDOPEN, true, false},
    {XML_VAL_CLOSURE_OPENCLOSED, false, true},
    {XML_VAL_CLOSURE_OPENOPEN, false, false},
};

const ClosureRow& ClosureOf(const XMLCh* text) {
  for (const ClosureRow& row : kClosures)
    if (EqualsAscii(text, row.text)) return row;
  Raise(MessageId::kInvalidAttributeValueIn, {ToUTF8(text), XML_ATT_INTERVAL_CLOSURE, XML_ELE_INTERVAL});
}

constexpr int kFirstBoundedBin = 2;  // from here on an interval has a margin

struct Bounds {
  double low;
  double high;
  bool lowIncluded;
  bool highIncluded;
};

// Whether two of the ranges intersect: their bounds are equal, they touch at a point that both include, or a
// bound of one lies strictly inside the other.  Every two are compared, inverted ranges too, without trying
// every pair.
bool AnyIntersect(const std::vector<std::unique_ptr<ScoreValueRange>>& ranges) {
  std::vector<Bounds> bounds;
  std::vector<double> ends;
  std::vector<double> includedLows;
  for (const auto& range : ranges) {
    const double low = range->GetMin()->GetDouble(), high = range->GetMax()->GetDouble();
    bounds.push_back({low, high, range->GetLowEnd(), range->GetHighEnd()});
    ends.insert(ends.end(), {low, high});
    if (range->GetLowEnd()) includedLows.push_back(low);
  }
  std::ranges::sort(ends);
  std::ranges::sort(includedLows);
  const auto isInside = [&ends](const Bounds& range) {
    const auto first = std::ranges::upper_bound(ends, range.low);
    return first != ends.end() && *first < range.high;
  };
  const auto isTouched = [&includedLows](const Bounds& range) {
    if (!range.highIncluded) return false;
    const auto [first, last] = std::equal_range(includedLows.begin(), includedLows.end(), range.high);
    const bool isItself = range.lowIncluded && range.low == range.high;
    return last - first > (isItself ? 1 : 0);
  };
  const auto limits = [](const Bounds& range) { return std::pair(range.low, range.high); };
  std::ranges::sort(bounds, {}, limits);
  return std::ranges::adjacent_find(bounds, {}, limits) != bounds.end() ||
         std::ranges::any_of(bounds, isInside) || std::ranges::any_of(bounds, isTouched);
}

// Reads the bins of one Discretize.
class BinReader {
 public:
  BinReader(const PMMLTranslator& translator, TransformVar& variable, const XMLCh* field)
      : fTranslator(translator),
        fVariable(variable),
        fField(field),
        fLearnsLabels(variable.GetValueLabels() == nullptr) {}

  void Read(const DOMElement& discretize);

 private:
  void ReadBin(const DOMElement& bin);
  void ReadExtension(const DOMElement& extension);
  void AddLabel(const XMLCh* text);
  void AddRange(const DOMElement& interval);
  void AddValue(std::unique_ptr<ScoreValue> value) { fValues.push_back(std::move(value)); }
  int Counter() const { return static_cast<int>(fValues.size()); }

  const PMMLTranslator& fTranslator;
  TransformVar& fVariable;
  const XMLCh* fField;
  bool fLearnsLabels;  // the bin values become the categories of a variable that had none
  std::vector<std::unique_ptr<ScoreValueRange>> fRanges;
  std::vector<std::unique_ptr<ScoreValue>> fValues;  // null: the input itself
};

void BinReader::Read(const DOMElement& discretize) {
  ForEachChildElement(&discretize, [this](const DOMElement& child) {
    if (HasTag(child, XML_ELE_DISCRETIZEBIN)) return ReadBin(child);
    if (HasTag(child, XML_ELE_EXTENSION)) return ReadExtension(child);
    Raise(MessageId::kInvalidNodeExpectedIn,
          {ToUTF8(child.getTagName()), std::string(XML_ELE_EXTENSION) + ", " + XML_ELE_DISCRETIZEBIN,
           XML_ELE_DISCRETIZEBIN});
  });
  if (AnyIntersect(fRanges)) Raise(MessageId::kValueRangesIntersect, {ToUTF8(fField)});
  if (fRanges.size() != fValues.size())
    Raise(MessageId::kBadBinning, {XML_ELE_DISCRETIZEBIN, ToUTF8(fField)});
  const std::string name = fTranslator.EncodedText(fField);
  for (std::size_t i = 0; i < fRanges.size(); ++i)
    fVariable.AddBinningValue(fRanges[i].release(), fValues[i].release(), name);
}

void BinReader::AddLabel(const XMLCh* text) {
  if (!fLearnsLabels || IsEmpty(text)) return;
  const std::string label = fTranslator.EncodedText(text);
  fVariable.AddScoreValueLabel(fTranslator.CarefullyMakeVarValue(&fVariable, text), label);
}

void BinReader::AddRange(const DOMElement& interval) {
  fRanges.emplace_back(PMMLTranslator::HandleDiscretizeBinInterVal(&interval, Counter()));
}

void BinReader::ReadBin(const DOMElement& bin) {
  const XMLCh* const text = RequiredAttribute(bin, XML_ATT_BINVALUE);
  AddLabel(text);
  bool hasInterval = false;
  bool hasExtension = false;
  bool hasRecoding = false;  // the bin stands for missing values, not for an interval
  bool isTargetMissing = false;
  bool isCopied = false;
  ForEachChildElement(&bin, [&](const DOMElement& child) {
    if (HasTag(child, XML_ELE_INTERVAL)) {
      if (std::exchange(hasInterval, true))
        Raise(MessageId::kMoreThanOneIn, {XML_ELE_INTERVAL, XML_ELE_DISCRETIZEBIN});
      if (!hasRecoding) AddRange(child);
    } else if (HasTag(child, XML_ELE_EXTENSION)) {
      hasExtension = true;
      const XMLCh* const name = Attribute(child, XML_ATT_EXT_NAME);
      const bool recodes = EqualsAscii(name, XML_ATT_TRAN_EXT_NAME_MAPSYSMISTO) ||
                           EqualsAscii(name, XML_ATT_TRAN_EXT_NAME_MISSINGCOPY);
      if (recodes) fTranslator.HandleZENTExtensions(&child, &fVariable);
      hasRecoding = hasRecoding || recodes;
      isTargetMissing = isTargetMissing || EqualsAscii(name, XML_ATT_TRAN_EXT_NAME_RECODETARGETSYSMIS);
      isCopied = isCopied || EqualsAscii(name, XML_ATT_TRAN_EXT_NAME_INTERVALCOPY) ||
                 EqualsAscii(name, XML_ATT_TRAN_EXT_NAME_ELSECOPY);
    } else {
      Raise(MessageId::kInvalidNodeExpectedIn,
            {ToUTF8(child.getTagName()), std::string(XML_ELE_EXTENSION) + ", " + XML_ELE_INTERVAL,
             XML_ELE_DISCRETIZEBIN});
    }
  });
  if (isTargetMissing) {
    AddValue(std::make_unique<NumericValue>());
  } else if (isCopied) {
    AddValue(nullptr);
  } else if (!hasExtension && fVariable.GetVarType() == ScoreDictVar::kNUMERIC_VAR) {
    AddValue(std::make_unique<NumericValue>(BaseTranslator::VerifyDouble(text)));
  } else if (!hasExtension) {
    AddValue(std::make_unique<StringValue>(fTranslator.EncodedText(text)));
  }
  if (!hasInterval) Raise(MessageId::kMissingNodeIn, {XML_ELE_INTERVAL, XML_ELE_DISCRETIZEBIN});
}

void BinReader::ReadExtension(const DOMElement& extension) {
  const XMLCh* const name = Attribute(extension, XML_ATT_EXT_NAME);
  const bool isTargetMissing = EqualsAscii(name, XML_ATT_TRAN_EXT_NAME_RECODETARGETSYSMIS);
  if (!isTargetMissing && !EqualsAscii(name, XML_ATT_TRAN_EXT_NAME_INTERVALCOPY))
    return fTranslator.HandleZENTExtensions(&extension, &fVariable);
  const DOMElement* const interval = FirstChildElement(&extension);
  if (interval == nullptr) Raise(MessageId::kMissingNodeIn, {XML_ELE_INTERVAL, XML_ELE_DISCRETIZEBIN});
  AddRange(*interval);
  AddValue(isTargetMissing ? std::make_unique<NumericValue>() : nullptr);
}

}  // namespace

std::string PMMLTranslator::HandleDiscritize(DOMElement* element, ScoreDictVar* derived,
                                             const ScoreDictionary* dataDictionary,
                                             const ScoreDictionary* transformations) {
  const XMLCh* const name = RequiredAttribute(*element, XML_ATT_FIELD);
  const ScoreDictVar& field = RequiredVariable(name, dataDictionary, transformations);
  auto& variable = static_cast<TransformVar&>(*derived);
  if (std::unique_ptr<ScoreValue> missing = OptionalValue(*element, XML_ATT_MISSREPVALUE, variable))
    variable.SetRecodeMissValueTo(missing.release());
  if (std::unique_ptr<ScoreValue> other = OptionalValue(*element, XML_ATT_DEFAULTVALUE, variable))
    variable.SetRecodeDefaultValue(other.release());
  bool hasBins = false;
  ForEachElementBelow(*element, XML_ELE_DISCRETIZEBIN, [&hasBins](const DOMElement&) { hasBins = true; });
  if (!hasBins) Raise(MessageId::kMissingNodeIn, {XML_ELE_DISCRETIZEBIN, XML_ELE_DERIVEDFIELD});
  BinReader(*this, variable, name).Read(*element);
  return field.GetName();
}

ScoreValueRange* PMMLTranslator::HandleDiscretizeBinInterVal(const DOMElement* interval, int index) {
  const ClosureRow& closure = ClosureOf(RequiredAttribute(*interval, XML_ATT_INTERVAL_CLOSURE));
  const XMLCh* const left = FindAttribute(*interval, XML_ATT_INTERVAL_LEFTMARGIN);
  const XMLCh* const right = FindAttribute(*interval, XML_ATT_INTERVAL_RIGHTMARGIN);
  const double low = left == nullptr ? -NumericValue::GetInfinity() : VerifyDouble(left);
  if (left == nullptr && right == nullptr && index >= kFirstBoundedBin)
    Raise(MessageId::kOneOfRequired, {XML_ATT_INTERVAL_RIGHTMARGIN, XML_ATT_INTERVAL_LEFTMARGIN});
  const double high = right == nullptr ? NumericValue::GetInfinity() : VerifyDouble(right);
  return new Range(new NumericValue(low), new NumericValue(high), closure.lowIncluded, closure.highIncluded);
}

}  // namespace KxVeyra_940
