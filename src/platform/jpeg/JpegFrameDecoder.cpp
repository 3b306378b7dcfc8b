#include "platform/jpeg/JpegFrameDecoder.h"

#include <algorithm>
#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <functional>

// Needs what is above.
#include <jerror.h>
#include <jpeglib.h>

namespace tessaloom {

namespace {

/// Stray bytes that are no damage, as the library counts them: it misses up to 6, and adds up those of
/// several restarts.
constexpr int StrayAtRestart = 16;
constexpr int StrayAtEnd = 8;

/// Passes over a picture that no camera asks for.
constexpr int MostScans = 500;

/// The work on one file.
struct Work {
    jpeg_decompress_struct state{};
    jpeg_error_mgr errors{};
    jpeg_progress_mgr progress{};
    std::jmp_buf back;
    std::span<const std::uint8_t> file;
    bool damaged = false;

    explicit Work(std::span<const std::uint8_t> bytes) : file(bytes) {
        state.client_data = this;
        state.err = jpeg_std_error(&errors);
        errors.error_exit = &Work::GiveUp;
        errors.emit_message = &Work::Warn;
        errors.output_message = [](j_common_ptr) {};
        progress.progress_monitor = &Work::Watch;
    }
    ~Work() { jpeg_destroy_decompress(&state); }
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;

    static Work& Of(j_common_ptr state) { return *static_cast<Work*>(state->client_data); }

    [[noreturn]] static void GiveUp(j_common_ptr state) { std::longjmp(Of(state).back, 1); }

    static void Warn(j_common_ptr state, int level) {
        Work& work = Of(state);
        if (level >= 0 || work.Harmless()) return;
        work.damaged = true;
        GiveUp(state);
    }

    static void Watch(j_common_ptr state) {
        if (Of(state).state.input_scan_number > MostScans) GiveUp(state);
    }

    bool Harmless() const {
        switch (errors.msg_code) {
            case JWRN_JFIF_MAJOR:
            case JWRN_ADOBE_XFORM:
                return true;
            case JWRN_JPEG_EOF:
                // Where picture data is missing another warning follows, but whole passes may be.
                return !state.progressive_mode && state.comps_in_scan == state.num_components;
            case JWRN_EXTRANEOUS_DATA:
                return Stray(errors.msg_parm.i[0]);
            default:
                return false;
        }
    }

    bool Stray(int count) const {
        const bool head = state.input_scan_number == 0;
        const bool end = state.input_iMCU_row >= state.total_iMCU_rows;
        return head || count <= (end ? StrayAtEnd : StrayAtRestart) ||
               AllAlike(static_cast<std::size_t>(count));
    }

    /// The bytes before the place that was read last; the end of the file when that is behind it.
    bool AllAlike(std::size_t count) const {
        const std::uint8_t *first = file.data(), *place = state.src->next_input_byte;
        const bool inside =
            std::less_equal<>()(first, place) && std::less_equal<>()(place, first + file.size());
        const auto before = file.first(inside ? static_cast<std::size_t>(place - first) : file.size());
        if (count > before.size()) return false;
        const auto bytes = before.last(count);
        return std::ranges::all_of(bytes, [&](std::uint8_t byte) { return byte == bytes[0]; });
    }
};

/// False when the library gave up. steps: has nothing that would have to be destroyed.
template <typename Steps>
bool Attempt(Work& work, const Steps& steps) {
    if (setjmp(work.back)) return false;
    steps();
    return true;
}

void Start(Work& work) {
    jpeg_create_decompress(&work.state);
    work.state.progress = &work.progress;
    jpeg_mem_src(&work.state, work.file.data(), work.file.size());
    jpeg_read_header(&work.state, TRUE);
}

/// From the start marker on: some cameras send line breaks before it.
std::span<const std::uint8_t> FromStart(std::span<const std::uint8_t> file) {
    constexpr std::uint8_t StartMarker[] = {0xFF, 0xD8};
    const auto found = std::ranges::search(file, StartMarker);
    return file.subspan(static_cast<std::size_t>(found.begin() - file.begin()));
}

JpegHeader::Colours ColoursOf(J_COLOR_SPACE space) {
    switch (space) {
        case JCS_GRAYSCALE:
            return JpegHeader::Colours::Grey;
        case JCS_RGB:
            return JpegHeader::Colours::RGB;
        case JCS_CMYK:
            return JpegHeader::Colours::CMYK;
        case JCS_YCCK:
            return JpegHeader::Colours::YCCK;
        default:
            return JpegHeader::Colours::YCbCr;
    }
}

}  // namespace

JpegResult JpegFrameDecoder::ReadHeader(std::span<const std::uint8_t> file, JpegHeader& header) {
    Work work(FromStart(file));
    if (work.file.empty()) return JpegResult::Failed;
    // Among what it cannot read are kinds that another decoder may know.
    if (!Attempt(work, [&] { Start(work); })) return JpegResult::Unsupported;
    const auto width = static_cast<int>(work.state.image_width),
               height = static_cast<int>(work.state.image_height);
    if (!limits_.AllowJpeg(width, height, work.file)) return JpegResult::TooLarge;
    header = {width, height, ColoursOf(work.state.jpeg_color_space)};
    return JpegResult::Ok;
}

JpegResult JpegFrameDecoder::Decode(std::span<const std::uint8_t> file, const JpegHeader& header,
                                    std::uint8_t* rows, int stride) {
    if (header.colours == JpegHeader::Colours::CMYK || header.colours == JpegHeader::Colours::YCCK)
        return JpegResult::Unsupported;
    Work work(FromStart(file));
    jpeg_decompress_struct& state = work.state;
    const bool whole = Attempt(work, [&] {
        Start(work);
        state.out_color_space = JCS_EXT_BGR;
        jpeg_start_decompress(&state);
        if (static_cast<int>(state.output_width) != header.width ||
            static_cast<int>(state.output_height) != header.height)
            Work::GiveUp(reinterpret_cast<j_common_ptr>(&state));
        while (state.output_scanline < state.output_height) {
            const auto fromBottom =
                static_cast<std::ptrdiff_t>(state.output_height - 1 - state.output_scanline);
            JSAMPROW row = rows + fromBottom * stride;
            jpeg_read_scanlines(&state, &row, 1);
        }
        jpeg_finish_decompress(&state);
    });
    if (whole) return JpegResult::Ok;
    return work.damaged ? JpegResult::Damaged : JpegResult::Failed;
}

}  // namespace tessaloom
