// What came of a call of the factory, as one text that a table row can hold.

#ifndef VEYRA_TESTS_ABI_OUTCOME_H_
#define VEYRA_TESTS_ABI_OUTCOME_H_

#include <gtest/gtest.h>

#include <exception>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "veyra/ModelFactory.h"
#include "veyra/VYException.h"
#include "xml/XmlText.h"

namespace VeyraTest {

using KxVeyra_940::ModelFactory;
using KxVeyra_940::ScoreModel;
using Names = std::vector<std::string>;

// Each test runs without Initialize and after it.
class InitializedOrNot : public testing::TestWithParam<bool> {
 public:
  static std::string Name(const testing::TestParamInfo<bool>& how) {
    return how.param ? "Initialised" : "PerCall";
  }

 protected:
  InitializedOrNot() {
    if (GetParam()) ModelFactory::Initialize("");
  }
  ~InitializedOrNot() override {
    if (GetParam()) ModelFactory::Terminate();
  }
};

// "260301: X|detail".
inline std::string Text(const KxVeyra_940::VYException& exception) {
  std::string text = std::to_string(exception.GetErrorCode());
  const char* separator = ": ";
  for (const auto& error : exception.GetErrors()) {
    for (const std::string& argument : error.arguments) {
      text.append(separator).append(argument);
      separator = ", ";
    }
  }
  if (!exception.GetDetail().empty()) text.append("|").append(exception.GetDetail());
  return text;
}

// The kind of the model that `make` returns (test plug-ins tell there how they were called), "null", or the
// exception.
template <typename Make>
std::string Outcome(Make make) {
  try {
    const std::unique_ptr<ScoreModel> model(make());
    return model == nullptr ? "null" : model->GetModelKind();
  } catch (const KxVeyra_940::VYException& exception) {
    return Text(exception);
  } catch (const xercesc::XMLException& exception) {
    return "parser's: " + KxXML_940::ToUTF8(exception.getMessage());
  } catch (const xercesc::DOMException& exception) {
    return "DOM's: " + KxXML_940::ToUTF8(exception.getMessage());
  } catch (const std::ios_base::failure&) {
    return "stream's";
  } catch (const std::exception& exception) {
    return std::string("standard: ") + exception.what();
  }
}

// The outcome of MakeModelFromXML with these arguments.
template <typename... Arguments>
std::string Made(Arguments&&... arguments) {
  return Outcome([&] { return ModelFactory::MakeModelFromXML(std::forward<Arguments>(arguments)...); });
}

inline std::string OutcomeOf(const std::string& document, const Names& names,
                             const std::string& encoding = "") {
  std::istringstream in(document);
  return Made(in, names, encoding);
}

inline std::string OutcomeWithDictionary(const std::string& document, const Names& names,
                                         KxVeyra_940::ScoreDictionary* dictionary = nullptr) {
  std::istringstream in(document);
  return Made(in, dictionary, names, "");
}

}  // namespace VeyraTest

#endif  // VEYRA_TESTS_ABI_OUTCOME_H_
