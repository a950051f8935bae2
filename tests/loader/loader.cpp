// Loads a module that uses the plug-in, lets it work, unloads it, and asks the loader whether the plug-in is
// really gone; many times over, in memory that stays bounded.
//
//   plugin_loader GUEST PLUGIN_SONAME ROUNDS
#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

// Under the address sanitizer freed memory waits before it is used again; there leaks are found by name.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kMeasuresMemory = false;
#elif defined(__has_feature)
constexpr bool kMeasuresMemory = !__has_feature(address_sanitizer);
#else
constexpr bool kMeasuresMemory = true;
#endif

// A module as small as the plug-in's callbacks would show if each round left it behind.
constexpr long kMostGrowth = 4L << 20;

bool IsFound(char const* soname) {
  void* const library = dlopen(soname, RTLD_LAZY | RTLD_NOLOAD);
  if (library == nullptr) return false;
  dlclose(library);
  return true;
}

bool IsMapped(char const* soname) {
  auto const compare = [](dl_phdr_info* info, std::size_t, void* name) {
    return std::string_view(info->dlpi_name).find(static_cast<char const*>(name)) == std::string_view::npos
               ? 0
               : 1;
  };
  return dl_iterate_phdr(compare, const_cast<char*>(soname)) != 0;
}

// Bytes of the process that stand in memory.
long GetResidentBytes() {
  long pages = 0;
  if (std::FILE* const file = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(file, "%*d %ld", &pages) != 1) pages = 0;
    std::fclose(file);
  }
  return pages * sysconf(_SC_PAGESIZE);
}

// An empty text when all went well. Every tenth time the plug-in comes and goes without having been used.
char const* LoadUseUnload(char const* guest, char const* plugin, int round) {
  void* const module = dlopen(guest, RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) return dlerror();
  auto const use = reinterpret_cast<char const* (*)(int)>(dlsym(module, "UsePlugin"));
  if (use == nullptr) return "the guest has no UsePlugin";
  if (!IsFound(plugin) || !IsMapped(plugin))
    return "the plug-in is not found under its name while it is loaded";
  if (round % 10 != 0) {
    if (char const* const fault = use(round); *fault != '\0') {
      std::puts(fault);
      return "the guest failed";
    }
  }
  if (dlclose(module) != 0) return dlerror();
  if (IsFound(plugin)) return "the loader still has the plug-in";
  return IsMapped(plugin) ? "the plug-in is still mapped" : "";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  int const rounds = std::atoi(argv[3]);
  long settled = 0;
  for (int round = 1; round <= rounds; ++round) {
    if (char const* const fault = LoadUseUnload(argv[1], argv[2], round); *fault != '\0') {
      std::printf("round %d: %s\n", round, fault);
      return 1;
    }
    if (round == rounds / 10) settled = GetResidentBytes();
  }
  long const growth = GetResidentBytes() - settled;
  std::printf("loaded, used and unloaded %d times; %ld bytes more than after a tenth of them\n", rounds,
              growth);
  return kMeasuresMemory && growth > kMostGrowth ? 1 : 0;
}
