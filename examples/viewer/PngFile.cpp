#include "PngFile.h"

#include <png.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <random>

namespace KesraViewer
{

namespace
{

struct FileCloser
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

// libpng reports errors through longjmp; the C++ side stays out of the frames
// it jumps over, so only plain data lives in these two functions.
bool Encode(std::FILE* file, int width, int height, const unsigned char* rgba)
{
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    if (info == nullptr || setjmp(png_jmpbuf(png)))
    {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_init_io(png, file);
    png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8,
                 PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    const std::size_t stride = static_cast<std::size_t>(width) * 4;
    for (int row = height - 1; row >= 0; --row)
    {
        png_write_row(png, rgba + static_cast<std::size_t>(row) * stride);
    }
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

bool Decode(std::FILE* file, png_uint_32& width, png_uint_32& height, unsigned char** pixels)
{
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    if (info == nullptr || setjmp(png_jmpbuf(png)))
    {
        png_destroy_read_struct(&png, &info, nullptr);
        return false;
    }
    png_init_io(png, file);
    png_read_info(png, info);
    png_set_expand(png);
    png_set_strip_16(png);
    png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
    png_read_update_info(png, info);
    width = png_get_image_width(png, info);
    height = png_get_image_height(png, info);
    const std::size_t stride = static_cast<std::size_t>(width) * 4;
    *pixels = static_cast<unsigned char*>(std::malloc(stride * height));
    if (*pixels == nullptr)
    {
        png_destroy_read_struct(&png, &info, nullptr);
        return false;
    }
    for (png_uint_32 row = 0; row < height; ++row)
    {
        png_read_row(png, *pixels + row * stride, nullptr);
    }
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    return true;
}

} // namespace

bool WritePng(const std::string& path, int width, int height, const std::vector<unsigned char>& rgba,
              std::string& error)
{
    if (width <= 0 || height <= 0 || rgba.size() != static_cast<std::size_t>(width) * height * 4)
    {
        error = path + ": no picture to write";
        return false;
    }
    const std::filesystem::path target(path);
    const std::filesystem::path temporary =
        target.parent_path() / (".kesra-viewer-" + std::to_string(std::random_device{}()) + ".part");
    File file(std::fopen(temporary.c_str(), "wb"));
    if (!file)
    {
        error = path + ": cannot be written (" + std::strerror(errno) + ")";
        return false;
    }
    const bool encoded = Encode(file.get(), width, height, rgba.data());
    const bool closed = std::fclose(file.release()) == 0;
    std::error_code code;
    if (!encoded || !closed)
    {
        std::filesystem::remove(temporary, code);
        error = path + ": writing failed";
        return false;
    }
    std::filesystem::rename(temporary, target, code);
    if (code)
    {
        std::filesystem::remove(temporary, code);
        error = path + ": cannot be written (" + code.message() + ")";
        return false;
    }
    return true;
}

bool ReadPng(const std::string& path, int& width, int& height, std::vector<unsigned char>& rgba,
             std::string& error)
{
    File file(std::fopen(path.c_str(), "rb"));
    if (!file)
    {
        error = path + ": cannot be read";
        return false;
    }
    png_uint_32 w = 0;
    png_uint_32 h = 0;
    unsigned char* pixels = nullptr;
    if (!Decode(file.get(), w, h, &pixels))
    {
        std::free(pixels);
        error = path + ": not a whole PNG";
        return false;
    }
    width = static_cast<int>(w);
    height = static_cast<int>(h);
    rgba.assign(pixels, pixels + static_cast<std::size_t>(w) * h * 4);
    std::free(pixels);
    return true;
}

} // namespace KesraViewer
