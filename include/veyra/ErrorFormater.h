// Turning message numbers and their arguments into text.

#ifndef VEYRA_ERRORFORMATER_H_
#define VEYRA_ERRORFORMATER_H_

#include <cstdarg>
#include <string>
#include <vector>

#include "veyra/Export.h"

namespace ScoreContext {

// One row of a message catalogue.  `text` is an ICU MessageFormat pattern that outlives every formatter.
struct MessageItem {
  int id;
  const char* text;
};

// Formats messages by number.  Arguments are UTF-8 texts in placeholder order.
class VEYRA_API IErrorFormater {
 public:
  // As many C strings follow as the message has placeholders.
  virtual std::string FormatV(int id, ...) = 0;
  // `count` C strings follow; none is null.
  virtual std::string VFormatN(int id, int count, va_list args) = 0;
  virtual std::string FormatN(int id, int count, ...) = 0;
  virtual std::string Format(int id, const std::vector<std::string>& args) = 0;
  // The number of placeholders of the message; 0 for an unknown id.
  virtual int GetParameterNumber(int id) = 0;
  // Takes `count` rows; the texts are not copied.  False, and nothing changes, when a text for the first
  // row's id is held already.
  virtual bool LoadMessages(int count, MessageItem* items) = 0;

 protected:
  ~IErrorFormater() = default;
};

}  // namespace ScoreContext

#endif  // VEYRA_ERRORFORMATER_H_
