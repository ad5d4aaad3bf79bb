// Paths as products and users give them.
#include "fuzz/Fuzz.h"
#include "platform/Paths.h"

namespace {

using kr::fuzz::require;
namespace paths = kr::paths;

// Slashes that are doubled or at the end mean nothing.
std::string withoutIdleSlashes(std::string path) {
  path.erase(
      std::unique(path.begin(), path.end(), [](char one, char next) { return one == '/' && next == '/'; }),
      path.end());
  if (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::string> words = kr::fuzz::words(kr::fuzz::text(data, size));
  const std::string& path = words.front();
  const std::string& other = words.back();

  const std::string_view name = paths::lastComponent(path);
  require(name == "/" || name.find('/') == std::string_view::npos, "a name holds no slash");
  require(paths::lastComponent(paths::joined(paths::parent(path), name)) == name,
          "folder and name make a path of that name");
  require(paths::parent(path).size() <= path.size(), "the way up ends");
  require(paths::extension(path).find('.') == std::string_view::npos, "an extension holds no dot");
  require(path.starts_with(paths::withoutExtension(path)), "only the end of a path is taken off");

  const std::string inside = paths::joined("/" + other, "x");
  require(paths::isSameOrInside(inside, inside), "a folder holds itself");
  require(!paths::isSameOrInside(inside + "y", inside), "a longer name is another folder");
  if (path.starts_with('/')) {
    const std::string there = paths::expandingTilde(paths::abbreviatingWithTilde(path, inside), inside);
    require(withoutIdleSlashes(there) == withoutIdleSlashes(path), "an abbreviated path is the same path");
    require(paths::expandingTilde(path, inside) == path, "only a tilde is expanded");
  }
  return 0;
}
