#pragma once

#include "Server/Base/Object.h"

#include <boost/filesystem/path.hpp>

#include <memory>
#include <string>
#include <vector>

namespace Vs {

/// A file that the program shows or reads. Constructing one doesn't touch the disk.
class Resource : public Implements<Resource>
{
public:
    /// An absolute path, or one relative to the working directory.
    explicit Resource(std::wstring path) : m_path(std::move(path)) {}
    /// The file system path. Of a file in a language's folder (see PathInfo::localizationDirectory) the
    /// current language's own, or English's where the language has none. Says nothing about whether the file
    /// exists.
    [[nodiscard]] virtual std::wstring localPath() const;

protected:
    const std::wstring& path() const { return m_path; }
    /// `path` in the current language's folder, or in that of English.
    static std::wstring localized(const std::wstring& path);

private:
    std::wstring m_path;
};

/// One icon in several sizes: a folder of `16x16.png`, `24x24.png`, `32x32.png`, `64x64.png`. A single PNG
/// file serves for all sizes.
class ImageSetResource : public Implements<ImageSetResource, Resource>
{
public:
    using Implements::Implements;
    /// The sizes in pixels that every set has, in ascending order.
    static const std::vector<int>& sizes();
    /// The file of the smallest size that is not below `pixels`, or the largest.
    [[nodiscard]] std::wstring fileForSize(int pixels) const;
};

class ImageResource : public Implements<ImageResource, Resource>
{
public:
    using Implements::Implements;
};

class CursorResource : public Implements<CursorResource, Resource>
{
public:
    /// A hot spot of -1 is the middle.
    CursorResource(std::wstring path, int hotX, int hotY)
        : Implements(std::move(path)), m_hotX(hotX), m_hotY(hotY)
    {
    }

    /// One of the system's own cursors, by its number: 0 arrow, 1 pointing hand for picking, 3 wait and so on
    /// as Qt numbers its shapes, 17 wait.
    static CursorResource* defaultCursor(int shape);

    int hotX() const { return m_hotX; }
    int hotY() const { return m_hotY; }
    /// The number given to defaultCursor, or -1 for a picture.
    int shape() const { return m_shape; }

private:
    int m_hotX;
    int m_hotY;
    int m_shape = -1;
};

/// Serves the files under one folder. For one path there is one resource, owned by the manager. Main thread
/// only.
class ResourceMgr : public Implements<ResourceMgr>
{
public:
    explicit ResourceMgr(boost::filesystem::path folder);
    ~ResourceMgr() override;

protected:
    ImageSetResource* imageSet(const std::wstring& path);
    CursorResource* cursor(const std::wstring& path, int hotX, int hotY);
    ImageResource* image(const std::wstring& path);
    Resource* resource(const std::wstring& path);

private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

} // namespace Vs
