#include "tests/disk/power/disk_model.h"

#include <fcntl.h>

#include <algorithm>
#include <stdexcept>

namespace {

void resize(Content& content, std::int64_t size)
{
    content.size = size;
    content.bytes.resize(std::min(content.bytes.size(), static_cast<std::size_t>(size)));
}

void write(Content& content, std::size_t offset, const std::string& data, std::size_t from, std::size_t to)
{
    const std::size_t end = std::min(data.size(), to);
    if (content.bytes.size() < offset + end) {
        content.bytes.resize(offset + end);
    }
    std::copy(data.begin() + static_cast<std::ptrdiff_t>(from), data.begin() + static_cast<std::ptrdiff_t>(end),
              content.bytes.begin() + static_cast<std::ptrdiff_t>(offset + from));
    content.size = std::max(content.size, static_cast<std::int64_t>(offset + end));
}

}

RecordedDisk::RecordedDisk(const std::string& rootFolder)
    : root(rootFolder)
{
    static_cast<void>(make(true));
}

RecordedDisk::RecordedDisk(const std::string& rootFolder, const DiskImage& image)
    : RecordedDisk(rootFolder)
{
    const auto stand = [this](const std::string& name, int node) {
        const auto [folder, entryName] = place(root + '/' + name);
        current.at(folder).entries.emplace(entryName, node);
    };
    for (const std::string& name : image.folders) {
        stand(name, make(true));
    }
    for (const auto& [name, content] : image.files) {
        stand(name, make(false));
        current.back().content = content;
    }
    lasting = current;
}

int RecordedDisk::make(bool isFolder)
{
    lasting.push_back({ isFolder, {}, {} });
    current.push_back({ isFolder, {}, {} });
    return static_cast<int>(current.size()) - 1;
}

int RecordedDisk::entry(std::size_t folder, const std::string& name) const
{
    const auto found = current.at(folder).entries.find(name);
    return found == current.at(folder).entries.end() ? -1 : found->second;
}

std::size_t RecordedDisk::find(const std::string& path) const
{
    if (path == root) {
        return 0;
    }
    const auto [folder, name] = place(path);
    const int node = entry(folder, name);
    if (node < 0) {
        throw std::runtime_error("the record has nothing under " + path);
    }
    return static_cast<std::size_t>(node);
}

std::pair<std::size_t, std::string> RecordedDisk::place(const std::string& path) const
{
    const std::size_t slash = path.rfind('/');
    return { find(path.substr(0, slash)), path.substr(slash + 1) };
}

std::size_t RecordedDisk::nodeOf(const Operation& operation) const
{
    const auto found = open.find(operation.descriptor);
    if (found == open.end()) {
        throw std::runtime_error("the record lacks the opening of a file");
    }
    return found->second;
}

const std::vector<Change>& RecordedDisk::pending() const
{
    return changes;
}

void RecordedDisk::carryOut(std::vector<Node>& nodes, const Change& change, const Reached& reached)
{
    Node& node = nodes.at(change.node);
    switch (change.kind) {
    case Change::Kind::write:
        write(node.content, static_cast<std::size_t>(change.offset), change.data, reached.from, reached.to);
        break;
    case Change::Kind::resize:
        resize(node.content, change.offset);
        break;
    case Change::Kind::entry:
        node.entries.erase(change.formerName);
        node.entries.erase(change.name);
        if (change.target >= 0) {
            node.entries.emplace(change.name, change.target);
        }
        break;
    }
}

void RecordedDisk::add(const Change& change)
{
    carryOut(current, change, {});
    changes.push_back(change);
}

void RecordedDisk::synchronise(std::size_t node)
{
    for (const Change& change : changes) {
        if (change.node == node) {
            carryOut(lasting, change, {});
        }
    }
    std::erase_if(changes, [node](const Change& change) { return change.node == node; });
}

void RecordedDisk::apply(const Operation& operation)
{
    using disk::Kind;
    switch (operation.kind) {
    case Kind::note:
        break;
    case Kind::open: {
        if (operation.path != root) {
            const auto [folder, name] = place(operation.path);
            if (entry(folder, name) < 0 && (operation.flags & O_CREAT) != 0) {
                const int node = make(false);
                add({ .kind = Change::Kind::entry, .node = folder, .name = name, .target = node });
            }
        }
        const std::size_t node = find(operation.path);
        if ((operation.flags & O_TRUNC) != 0 && current.at(node).content.size > 0) {
            add({ .kind = Change::Kind::resize, .node = node });
        }
        open[operation.descriptor] = node;
        break;
    }
    case Kind::close:
        open.erase(operation.descriptor);
        break;
    case Kind::write:
        add({ .kind = Change::Kind::write,
              .node = nodeOf(operation),
              .offset = operation.offset,
              .data = operation.data });
        break;
    case Kind::truncate:
        if (const std::size_t node = nodeOf(operation); current.at(node).content.size != operation.offset) {
            add({ .kind = Change::Kind::resize, .node = node, .offset = operation.offset });
        }
        break;
    case Kind::allocate:
        if (const std::size_t node = nodeOf(operation); current.at(node).content.size < operation.offset) {
            add({ .kind = Change::Kind::resize, .node = node, .offset = operation.offset });
        }
        break;
    case Kind::sync:
        synchronise(nodeOf(operation));
        break;
    case Kind::rename: {
        const auto [folder, former] = place(operation.path);
        const auto [newFolder, name] = place(operation.newPath);
        if (folder != newFolder) {
            throw std::runtime_error("a file that moves to another folder is not understood");
        }
        add({ .kind = Change::Kind::entry,
              .node = folder,
              .name = name,
              .formerName = former,
              .target = entry(folder, former) });
        break;
    }
    case Kind::unlink: {
        const auto [folder, name] = place(operation.path);
        add({ .kind = Change::Kind::entry, .node = folder, .name = name });
        break;
    }
    case Kind::makeFolder: {
        const auto [folder, name] = place(operation.path);
        const int node = make(true);
        add({ .kind = Change::Kind::entry, .node = folder, .name = name, .target = node });
        break;
    }
    }
}

void RecordedDisk::collect(DiskImage& image, const std::vector<Node>& nodes, std::size_t folder,
                           const std::string& prefix)
{
    for (const auto& [name, index] : nodes.at(folder).entries) {
        const auto node = static_cast<std::size_t>(index);
        if (nodes.at(node).isFolder) {
            image.folders.insert(prefix + name);
            collect(image, nodes, node, prefix + name + '/');
        } else {
            image.files.emplace(prefix + name, nodes.at(node).content);
        }
    }
}

DiskImage RecordedDisk::image(const std::vector<Reached>& reached) const
{
    std::vector<Node> nodes = lasting;
    for (std::size_t i = 0; i < changes.size(); ++i) {
        if (reached.at(i).any) {
            carryOut(nodes, changes.at(i), reached.at(i));
        }
    }
    DiskImage result;
    collect(result, nodes, 0, std::string());
    return result;
}

DiskImage RecordedDisk::cached() const
{
    DiskImage result;
    collect(result, current, 0, std::string());
    return result;
}
