#include "support/files.h"

#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

void xasWriteFile(const std::string &path, std::string_view text, mode_t mode)
{
    if (fs::path{path}.has_parent_path())
        fs::create_directories(fs::path{path}.parent_path());
    fs::remove(path);
    std::ofstream file{path, std::ios::binary};
    file << text;
    file.close();
    if (!file || ::chmod(path.c_str(), mode) != 0)
        throw std::runtime_error{"cannot write " + path};
}

std::string xasReadFile(const std::string &path)
{
    std::ifstream file{path, std::ios::binary};
    if (!file) {
        ADD_FAILURE() << "no file " << path;
        return {};
    }
    return {std::istreambuf_iterator<char>{file}, {}};
}

bool xasExists(const std::string &path)
{
    return fs::exists(fs::symlink_status(path));
}

mode_t xasModeOf(const std::string &path)
{
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0)
        ADD_FAILURE() << "no file " << path;
    return status.st_mode & 07777;
}

XasTestDir::XasTestDir()
{
    std::string name = (fs::temp_directory_path() / "xas-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::runtime_error{"cannot make " + name};
    directory = name;
}

XasTestDir::~XasTestDir()
{
    std::error_code ignored;
    fs::remove_all(directory, ignored);
}

std::string XasTestDir::path(std::string_view name) const
{
    return name.empty() ? directory : directory + "/" + std::string{name};
}

std::string XasTestDir::write(std::string_view name, std::string_view text, mode_t mode) const
{
    xasWriteFile(path(name), text, mode);
    return path(name);
}

std::vector<std::string> XasTestDir::names() const
{
    std::vector<std::string> found;
    for (const auto &entry : fs::directory_iterator{directory})
        found.push_back(entry.path().filename());
    std::ranges::sort(found);
    return found;
}
