// The one exception of the library: numbered messages with their arguments, composed into text on demand.
//
//   try {
//     model = ModelFactory::MakeModelFromXML(path, "", "");
//   } catch (const KxVeyra_940::VYException& e) {
//     std::cerr << e.GetErrorCode() << ": " << e.GetErrorMessage() << '\n';
//   }
//
// It derives from nothing, std::exception included: catch it by name.  Threads: const operations may be
// called from several threads.

#ifndef VEYRA_VYEXCEPTION_H_
#define VEYRA_VYEXCEPTION_H_

#include <cstdint>
#include <string>
#include <vector>

#include "veyra/ErrorFormater.h"
#include "veyra/Export.h"

namespace KxVeyra_940 {

class VEYRA_API VYException {
 public:
  // One recorded message: its id and its arguments in placeholder order.
  struct ErrorInfo {
    std::int32_t id;
    std::vector<std::string> arguments;
  };

  // `formatter` is lent and may be null: then nothing can be recorded and the message is empty.
  explicit VYException(ScoreContext::IErrorFormater* formatter);
  VYException(int code, const std::string& detail, ScoreContext::IErrorFormater* formatter);
  VYException(const VYException& other);
  VYException& operator=(const VYException& other);
  virtual ~VYException();

  // The id of the last recorded message, or the code given to the constructor.
  int GetErrorCode() const { return fErrorCode; }

  // Records a message.  C strings follow, as many as the message has placeholders; a null ends them early.
  // REQUIRES: a list shorter than the placeholders is ended by a null pointer.
  // Returns false, having only set the code, when there is no formatter.
  bool PutErrorMessage(int id, ...);
  // The same with the arguments in a vector; those beyond the placeholders are left out.
  bool PutErrorMessage(int id, const std::vector<std::string>& arguments);

  // The recorded messages' texts, one behind the other; the text of the code when nothing is recorded.
  std::string ConstructMessage() const;
  // ConstructMessage() and the detail text; also written to the trace at level 3.
  std::string GetErrorMessage() const;

  const std::vector<ErrorInfo>& GetErrors() const { return fErrors; }
  // Free text that follows the messages, such as the XML parser's own words.
  void SetDetail(const std::string& detail) { fDetail = detail; }
  const std::string& GetDetail() const { return fDetail; }

 private:
  std::int32_t fErrorCode = 0;
  std::string fDetail;
  ScoreContext::IErrorFormater* fFormatter;  // lent
  std::vector<ErrorInfo> fErrors;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_VYEXCEPTION_H_
