#include "image/image_writer.h"

#include <algorithm>
#include <utility>

#include "image/number_text.h"
#include "image/output_buffer.h"
#include "image/sample_kernels.h"
#include "image/sample_type.h"
#include "image/text_util.h"

namespace korvanel {

namespace {

constexpr const char* kElementTypes[] = {"unsigned char", "unsigned short", "", "unsigned int"};

// Which pixels were being written, for the message of a failed write.
struct WritePosition {
  char letter = 'Y';
  uint32_t min_x = 0, max_x = 0, first_y = 0, last_y = 0;
  uint64_t count = 0;
};

std::string FailureText(SaveMode mode, const WritePosition& at) {
  if (mode == SaveMode::Raw) {
    return StrFormat("Unable to write comp %c pixels <%u,%u>..<%u,%u> (count = %llu)", at.letter,
                     at.min_x, at.first_y, at.max_x, at.last_y,
                     static_cast<unsigned long long>(at.count));
  }
  return StrFormat("Unable to write comp %c pixel XY: <%u,%u>", at.letter, at.max_x, at.last_y);
}

// Big-endian output: each 16- or 32-bit sample reversed; an 8-bit grey row
// has each whole group of four bytes reversed and its last width mod 4 bytes
// left alone, which is how this program has always written it.
template <typename T>
void ApplyByteOrder(T* values, uint64_t count, bool big_endian, bool reverse_byte_groups) {
  if (!big_endian) return;
  if constexpr (sizeof(T) == 1) {
    if (!reverse_byte_groups) return;
    for (uint64_t i = 0; i + 4 <= count; i += 4) {
      std::swap(values[i], values[i + 3]);
      std::swap(values[i + 1], values[i + 2]);
    }
  } else {
    for (uint64_t i = 0; i < count; ++i) values[i] = ByteSwap(values[i]);
  }
}

class CWriterRun {
 public:
  CWriterRun(const WriterLayout& layout, const SaveRequest& request)
      : layout_(layout), request_(request), image_width_(layout.planes[0]->width()) {}

  bool Run() {
    if (!out_.Open(request_.path, "wb")) {
      return Fail(StrFormat("Can't open %s for writing", request_.path.c_str()));
    }
    bool complete = false;
    DispatchBits(layout_.planes[0]->bits(), [&]<typename T>(std::type_identity<T>) {
      complete = request_.mode == SaveMode::Text ? WriteText<T>() : WriteSections<T>();
    });
    if (!complete) {
      out_.Close();  // what was written stays
      return false;
    }
    if (!out_.Close()) return Fail(FailureText(request_.mode, position_));
    return true;
  }

 private:
  bool Fail(std::string text) {
    if (request_.error != nullptr) *request_.error = std::move(text);
    return false;
  }

  // After every row: hand full buffers to the file, count, and stop on cancel.
  bool FinishRow(uint64_t pixels) {
    if (!out_.FlushIfFull()) return Fail(FailureText(request_.mode, position_));
    if (request_.progress == nullptr) return true;
    request_.progress->pixels_done.fetch_add(pixels, std::memory_order_relaxed);
    if (!ContinueAfterRow(request_.progress->observer, static_cast<uint32_t>(pixels))) {
      request_.progress->cancel.store(true, std::memory_order_relaxed);
    }
    return !request_.progress->cancel.load(std::memory_order_relaxed);
  }

  // --- raw, hex dump and C arrays -------------------------------------------

  template <typename T>
  bool WriteSections() {
    const std::vector<SampleSection> sections = SectionsForPacking(layout_, request_.packing);
    const bool big_endian = request_.big_endian;
    const bool reverse_groups = layout_.gray;
    std::vector<T> row_values;
    for (size_t s = 0; s < sections.size(); ++s) {
      const SampleSection& section = sections[s];
      if (section.picks.empty() || section.picks.size() > kMaxSectionPicks) {
        return Fail("Unsupported layout " + section.name);
      }
      const SectionRows rows(section, request_.area, image_width_);
      BeginSection<T>(sections, s, rows);
      uint64_t index = 0;  // running value index inside the section
      for (uint64_t r = 0; r < rows.RowCount(); ++r) {
        const uint64_t count = rows.ValueCount(r);
        if (row_values.size() < count) row_values.resize(count);
        rows.Gather(layout_.planes, r, row_values.data());
        ApplyByteOrder(row_values.data(), count, big_endian, reverse_groups);
        EmitRow<T>(row_values.data(), count, rows.RowOffset(r), index, rows.TotalValues());
        index += count;
        position_ = {section.name[0], request_.area.min_x, request_.area.max_x,
                     rows.FirstAreaRow(r), rows.LastAreaRow(r), count};
        if (!FinishRow(rows.PixelCount(r))) return false;
      }
      EndSection<T>(sections, s, rows);
    }
    return true;
  }

  template <typename T>
  void BeginSection(const std::vector<SampleSection>& sections, size_t s, const SectionRows& rows) {
    if (request_.mode == SaveMode::HexDump) {
      std::string header;
      if (sections.size() > 1) {
        header = StrFormat(s == 0 ? "\n%s:\n\n" : "\n%s:\n", sections[s].name.c_str());
      }
      header += " ofs hex  ";
      for (uint32_t i = 0; i < 16; ++i) {
        AppendHex(header, i, 2 * sizeof(T));
        header += ' ';
      }
      out_.Append(header + "\n\n");
    } else if (request_.mode == SaveMode::CArray) {
      out_.Append(StrFormat("const %s raw%s[%llu] = {", kElementTypes[sizeof(T) - 1],
                            sections[s].name.c_str(),
                            static_cast<unsigned long long>(rows.TotalValues())));
    }
  }

  template <typename T>
  void EndSection(const std::vector<SampleSection>& sections, size_t s, const SectionRows& rows) {
    if (request_.mode != SaveMode::CArray) return;
    out_.Append(StrFormat("\n};\t// %llu bytes\n",
                          static_cast<unsigned long long>(rows.TotalValues() * sizeof(T))));
    if (s + 1 < sections.size()) out_.Append("\n");
  }

  // Room for one value with its separators and a line start.
  static constexpr size_t kValueRoom = 2 * kMaxNumberChars + 8;

  template <typename T>
  void EmitRow(const T* values, uint64_t count, uint64_t offset, uint64_t index, uint64_t total) {
    constexpr uint32_t kDigits = 2 * sizeof(T);
    switch (request_.mode) {
      case SaveMode::Raw:
        out_.Append(values, static_cast<size_t>(count * sizeof(T)));
        return;
      case SaveMode::HexDump: {
        char* p = out_.Reserve(kValueRoom);
        p = WriteHex(p, offset, 8);
        p = WriteLiteral(p, "  ");
        for (uint64_t i = 0; i < count; ++i) {
          out_.Commit(p);
          p = out_.Reserve(kValueRoom);
          p = WriteHex(p, values[i], kDigits);
          *p++ = ' ';
          if ((i + 1) % 16 == 0 && i + 1 < count) {
            *p++ = '\n';
            p = WriteHex(p, offset + i + 1, 8);
            p = WriteLiteral(p, "  ");
          }
        }
        *p++ = '\n';
        out_.Commit(p);
        return;
      }
      case SaveMode::CArray:
        for (uint64_t i = 0; i < count; ++i) {
          char* p = out_.Reserve(kValueRoom);
          if ((index + i) % 16 == 0) p = WriteLiteral(p, "\n\t");
          p = WriteLiteral(p, "0x");
          p = WriteHex(p, values[i], kDigits);
          if (index + i + 1 < total) p = WriteLiteral(p, ", ");
          out_.Commit(p);
        }
        return;
      case SaveMode::Text:
        return;
    }
  }

  // --- text ------------------------------------------------------------------

  template <typename T>
  bool WriteText() {
    const Rect& a = request_.area;
    const uint64_t width = a.Width();
    const uint64_t height = a.Height();
    const unsigned long long pixels = width * height;
    const bool planar =
        !layout_.gray && (request_.packing == SavePacking::Planar ||
                          (request_.packing == SavePacking::Original && layout_.original_planar));
    if (layout_.gray) {
      out_.Append(StrFormat("Image Y8: <%u,%u> .. <%u,%u> : %llux%llu (%llu pixels)\n\n", a.min_x,
                            a.min_y, a.max_x, a.max_y, static_cast<unsigned long long>(width),
                            static_cast<unsigned long long>(height), pixels));
    } else {
      out_.Append(StrFormat("Image %s(%s): <%u,%u> .. <%u,%u> : %llux%llu (%llu pixels)\n",
                            layout_.text_kind, layout_.letters.c_str(), a.min_x, a.min_y, a.max_x,
                            a.max_y, static_cast<unsigned long long>(width),
                            static_cast<unsigned long long>(height), pixels));
    }
    if (!planar) return WriteTextLines<T>(layout_.order, layout_.letters[0]);
    for (size_t c = 0; c < layout_.order.size(); ++c) {
      out_.Append(StrFormat(c == 0 ? "\n%c:\n\n" : "\n%c:\n", layout_.letters[c]));
      if (!WriteTextLines<T>({layout_.order[c]}, layout_.letters[c])) return false;
    }
    return true;
  }

  // "ofs: %08u <%u,%u> = v[,v,v]\n" for every pixel of the area.
  template <typename T>
  bool WriteTextLines(const std::vector<uint32_t>& planes, char letter) {
    const Rect& a = request_.area;
    const size_t count = std::min<size_t>(planes.size(), 3);
    for (uint32_t y = a.min_y; y <= a.max_y; ++y) {
      const T* rows[3] = {};
      for (size_t k = 0; k < count; ++k) rows[k] = layout_.planes[planes[k]]->Row<T>(y);
      DecimalCounter offset(uint64_t{y} * image_width_ + a.min_x, 8);
      DecimalCounter column(a.min_x, 1);
      char row_text[kMaxNumberChars + 8];
      char* row_end = WriteDecimal(row_text, y);
      row_end = WriteLiteral(row_end, "> = ");
      const auto row_size = static_cast<size_t>(row_end - row_text);
      for (uint32_t x = a.min_x; x <= a.max_x; ++x) {
        char* p = out_.Reserve(8 * kMaxNumberChars);
        p = WriteLiteral(p, "ofs: ");
        p = offset.Write(p);
        p = WriteLiteral(p, " <");
        p = column.Write(p);
        *p++ = ',';
        std::memcpy(p, row_text, row_size);
        p += row_size;
        offset.Increment();
        column.Increment();
        for (size_t k = 0; k < count; ++k) {
          if (k != 0) *p++ = ',';
          p = WriteDecimal(p, rows[k][x]);
        }
        *p++ = '\n';
        out_.Commit(p);
      }
      position_ = {letter, a.min_x, a.max_x, y, y, a.Width()};
      if (!FinishRow(a.Width())) return false;
    }
    return true;
  }

  const WriterLayout& layout_;
  const SaveRequest& request_;
  uint32_t image_width_;
  COutputBuffer out_;
  WritePosition position_;
};

bool AreaInside(const Rect& area, const Plane& plane) {
  return area.min_x <= area.max_x && area.min_y <= area.max_y && area.max_x < plane.width() &&
         area.max_y < plane.height();
}

}  // namespace

std::vector<SampleSection> SectionsForPacking(const WriterLayout& layout, SavePacking packing) {
  if (layout.gray || packing == SavePacking::Planar) {
    return PlanarSections(layout.letters, layout.order);
  }
  if (packing == SavePacking::Interleave) return {InterleavedSection(layout.letters, layout.order)};
  return layout.original;
}

bool WriteImage(const WriterLayout& layout, const SaveRequest& request) {
  if (layout.planes.empty() || layout.planes[0]->empty() ||
      !AreaInside(request.area, *layout.planes[0]) || layout.letters.size() != layout.order.size()) {
    if (request.error != nullptr) *request.error = "Nothing to save in the requested area";
    return false;
  }
  CWriterRun run(layout, request);
  return run.Run();
}

}  // namespace korvanel
