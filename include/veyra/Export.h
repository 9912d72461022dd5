// Which symbols leave the library: everything is hidden unless it carries VEYRA_API.

#ifndef VEYRA_EXPORT_H_
#define VEYRA_EXPORT_H_

#define VEYRA_API __attribute__((visibility("default")))

// The library's own version; the number in the namespaces and in plug-in file names is "940".
#define VEYRA_VERSION "9.4.0"

#endif  // VEYRA_EXPORT_H_
