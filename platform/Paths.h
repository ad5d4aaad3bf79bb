// Path text, by the rules of Cocoa's path operations. Nothing here looks at the disk. Paths are file-system
// bytes.
#pragma once

#include <string>
#include <string_view>

namespace kr::paths {

// "/a//" -> "/a"; "/" and "//" -> "/".
[[nodiscard]] std::string_view withoutTrailingSlashes(std::string_view path);

// "/a/b.app" -> "b.app"; slashes at the end do not count; "/" -> "/"; "" -> "".
[[nodiscard]] std::string_view lastComponent(std::string_view path);

// "/a/b.app" -> "/a"; "/a" -> "/"; "a" -> ""; "/" -> "/". Slashes at the end do not count.
[[nodiscard]] std::string_view parent(std::string_view path);

// "/a" + "b" -> "/a/b"; no slash is doubled; an empty side gives the other side.
[[nodiscard]] std::string joined(std::string_view folder, std::string_view name);

// "b.app" -> "app"; none in ".app", "b" and "b.".
[[nodiscard]] std::string_view extension(std::string_view path);

// "/a/b.app" -> "/a/b"; ".app" and "b" stay.
[[nodiscard]] std::string_view withoutExtension(std::string_view path);

// "~" or "~/..." with the home folder in place of the tilde; any other path as it is.
[[nodiscard]] std::string expandingTilde(std::string_view path, std::string_view home);

// The home folder at the front of the path as "~"; only whole components count ("/rootx" is not inside
// "/root").
[[nodiscard]] std::string abbreviatingWithTilde(std::string_view path, std::string_view home);

// Whether `path` is `folder` or lies below it. Both without links and "..", as paths of the disk.
[[nodiscard]] bool isSameOrInside(std::string_view path, std::string_view folder);

}  // namespace kr::paths
