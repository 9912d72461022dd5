// The formatter of numbered messages: a map from message id to ICU MessageFormat pattern.
//
// Threads: loading needs the formatter to itself; every other operation only reads and may be called by any
// number of threads at once.

#ifndef VEYRA_ERROR_VYERRORFORMATER_H_
#define VEYRA_ERROR_VYERRORFORMATER_H_

#include <cstdarg>
#include <map>
#include <string>
#include <vector>

#include "veyra/ErrorFormater.h"
#include "veyra/Export.h"

namespace ScoreContext {

class VEYRA_API VYErrorFormater : public IErrorFormater {
 public:
  // Loads `count` rows.  The texts are not copied: they outlive the formatter.
  VYErrorFormater(int count, const MessageItem* items);
  ~VYErrorFormater();

  std::string FormatV(int id, ...) override;
  std::string VFormatN(int id, int count, va_list args) override;
  std::string FormatN(int id, int count, ...) override;
  // The text of `id` with its placeholders replaced, doubled apostrophes read as one.  Without arguments the
  // text comes back as it was loaded; an unknown id gives the empty text.  A placeholder whose argument is
  // missing stays.  Never throws for a bad pattern: the text comes back as it was loaded.
  std::string Format(int id, const std::vector<std::string>& args) override;
  int GetParameterNumber(int id) override;
  bool LoadMessages(int count, MessageItem* items) override;

  // The text of `id` as it was loaded (lent); null for an unknown id.
  const char* FindMessageContent(int id) const;

 private:
  bool Load(int count, const MessageItem* items);

  std::map<int, const char*> fTexts;
};

}  // namespace ScoreContext

#endif  // VEYRA_ERROR_VYERRORFORMATER_H_
