#include "input/files/file_list.h"

#include "input/files/glob.h"
#include "input/files/input.h"
#include "input/form_mark.h"
#include "input/options/config.h"
#include "platform/paths.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <unordered_set>
#include <utility>

namespace bkdoc {

namespace {

constexpr std::size_t looked_at = 4096; // first bytes of a file

bool begins_as_document(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    std::string begin(looked_at, '\0');
    stream.read(begin.data(), static_cast<std::streamsize>(begin.size()));
    begin.resize(static_cast<std::size_t>(stream.gcount()));
    if (form_of(begin) != bk_parser::Form::text) {
        return true;
    }
    std::string_view rest = begin;
    while (!rest.empty()) {
        rest.remove_prefix(std::min(rest.find_first_not_of(" \t\r\n"), rest.size()));
        if (!rest.starts_with("//")) {
            break;
        }
        rest.remove_prefix(std::min(rest.find_first_of("\r\n"), rest.size()));
    }
    return rest.starts_with("#Brellwick_Serial_Version ") || rest.starts_with("#include \"");
}

class Lister {
public:
    explicit Lister(const FileListOptions& options) : options_(options) {}

    FileList run() {
        for (const std::string& operand : options_.operands) {
            add(operand);
        }
        if (options_.files_from) {
            add_from(*options_.files_from);
        }
        return std::move(list_);
    }

private:
    void add(const std::string& operand) {
        std::error_code error;
        const std::filesystem::path path = path_of(operand);
        if (operand != "-" && std::filesystem::is_directory(path, error)) {
            add_folder(path);
        } else if (is_glob(operand) && !std::filesystem::exists(path, error)) {
            add_pattern(operand);
        } else {
            add_file(operand);
        }
    }

    void add_file(const std::string& file) {
        if (known_.insert(file).second) {
            list_.files.push_back(file);
        }
    }

    void add_pattern(const std::string& pattern) {
        const std::vector<std::string> found = expand_glob(pattern);
        if (found.empty()) {
            list_.faults.push_back(pattern + ": no file matches this pattern");
        }
        for (const std::string& path : found) {
            std::error_code error;
            if (std::filesystem::is_directory(path_of(path), error)) {
                add_folder(path_of(path));
            } else {
                add_file(path);
            }
        }
    }

    void add_folder(const std::filesystem::path& folder) {
        const std::string prefix = folder == "." ? "./" : "";
        const std::vector<std::string>& extensions = options_.extensions.empty() && options_.use_config
                                                         ? config_for(folder).extensions
                                                         : options_.extensions;
        std::vector<std::string> files;
        const bool is_whole = walk(folder, extensions, prefix.size(), files);
        if (is_whole && files.empty() && !options_.may_be_empty) {
            list_.faults.push_back(text_of(folder) + ": no document in this folder" +
                                   (extensions.empty() ? "" : " has such an extension"));
        }
        std::sort(files.begin(), files.end());
        for (const std::string& file : files) {
            add_file(file);
        }
    }

    /// Collects the documents of a folder and of the folders below. Continues after a folder that cannot be read; returns whether
    /// all could.
    bool walk(const std::filesystem::path& top, const std::vector<std::string>& extensions,
              std::size_t prefix_size, std::vector<std::string>& files) {
        std::map<std::string, std::string> unread; // with the reasons
        for (std::vector<std::filesystem::path> open = {top}; !open.empty();) {
            const std::filesystem::path folder = std::move(open.back());
            open.pop_back();
            std::error_code error;
            std::filesystem::directory_iterator item(folder, error);
            for (; !error && item != end(item); item.increment(error)) {
                std::error_code ignored;
                if (text_of(item->path().filename()).starts_with('.')) {
                    continue;
                }
                if (item->is_directory(ignored) && !item->is_symlink(ignored)) {
                    open.push_back(item->path());
                } else if (is_document(*item, extensions)) {
                    files.push_back(slashed(item->path()).substr(prefix_size));
                }
            }
            if (error) {
                const std::string name = slashed(folder);
                unread.emplace(folder == top ? name : name.substr(prefix_size), system_reason(error));
            }
        }
        for (const auto& [name, reason] : unread) {
            list_.unread_folders.push_back(name);
            std::string fault = name;
            fault.append(": ").append(reason);
            list_.faults.push_back(std::move(fault));
        }
        return unread.empty();
    }

    /// A link that leads nowhere counts when its name is that of a document, so that the verb says why it is not read.
    static bool is_document(const std::filesystem::directory_entry& entry,
                            const std::vector<std::string>& extensions) {
        std::error_code ignored;
        const bool is_file = entry.is_regular_file(ignored);
        const bool is_lost = !is_file && entry.is_symlink(ignored) && !entry.exists(ignored);
        if (!is_file && !is_lost) {
            return false;
        }
        const std::string extension = text_of(entry.path().extension());
        if (extensions.empty()) {
            const bool is_backup = extension == ".bak" || extension.ends_with('~');
            return extension == ".bkd" || (is_file && !is_backup && begins_as_document(entry.path()));
        }
        return std::any_of(extensions.begin(), extensions.end(), [&extension](std::string_view wanted) {
            wanted.remove_prefix(wanted.starts_with('.') ? 1 : 0);
            return extension.size() == wanted.size() + 1 && std::string_view(extension).substr(1) == wanted;
        });
    }

    void add_from(const std::string& file) {
        const Input input(file);
        if (!input.refusal.empty()) {
            list_.faults.push_back(input.refusal);
            return;
        }
        const char separator = options_.is_nul_separated ? '\0' : '\n';
        for (std::string_view rest = input.bytes; !rest.empty();) {
            const std::size_t end = std::min(rest.find(separator), rest.size());
            std::string_view name = rest.substr(0, end);
            rest.remove_prefix(std::min(end + 1, rest.size()));
            if (separator == '\n' && name.ends_with('\r')) {
                name.remove_suffix(1);
            }
            if (!name.empty()) {
                add(std::string(name));
            }
        }
    }

    const FileListOptions& options_;
    FileList list_;
    std::unordered_set<std::string> known_;
};

} // namespace

FileList list_files(const FileListOptions& options) {
    return Lister(options).run();
}

} // namespace bkdoc
