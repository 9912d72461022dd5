// Where the loader looks for a plug-in, and what it says of it.

#ifndef VEYRA_TOOLS_PLUGINSEARCH_H_
#define VEYRA_TOOLS_PLUGINSEARCH_H_

#include <string>
#include <vector>

namespace VeyraTool {

struct PluginSearch {
  std::string library;             // its file name
  std::string fault;               // the loader's own words; empty when it can be opened
  std::vector<std::string> tried;  // directories, in the loader's order
};

// Opens the plug-in of the model kind as the library does.
PluginSearch SearchPlugin(const std::string& modelKind);

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_PLUGINSEARCH_H_
