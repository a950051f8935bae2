// Loads a module that uses the plug-in, lets it work, unloads it, and asks the loader whether the plug-in is
// really gone; several times over.
//
//   plugin_loader GUEST PLUGIN_SONAME
#include <dlfcn.h>

#include <cstdio>

namespace {

bool IsLoaded(char const* soname) {
  void* const library = dlopen(soname, RTLD_LAZY | RTLD_NOLOAD);
  if (library == nullptr) return false;
  dlclose(library);
  return true;
}

// An empty text when all went well.
char const* LoadUseUnload(char const* guest, char const* plugin) {
  void* const module = dlopen(guest, RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) return dlerror();
  auto const use = reinterpret_cast<char const* (*)()>(dlsym(module, "UsePlugin"));
  if (use == nullptr) return "the guest has no UsePlugin";
  if (!IsLoaded(plugin)) return "the plug-in is not found under its name while it is loaded";
  if (char const* const fault = use(); *fault != '\0') return fault;
  if (dlclose(module) != 0) return dlerror();
  return IsLoaded(plugin) ? "the plug-in is still loaded" : "";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  for (int round = 1; round <= 3; ++round) {
    if (char const* const fault = LoadUseUnload(argv[1], argv[2]); *fault != '\0') {
      std::printf("round %d: %s\n", round, fault);
      return 1;
    }
  }
  std::puts("loaded, used and unloaded three times");
  return 0;
}
