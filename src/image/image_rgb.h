#pragma once

#include "image/format_expression.h"
#include "image/image_concrete_base.h"

namespace korvanel {

// Three components held as R, G, B planes whatever their order in the file.
class CImageRgb : public CImageConcreteBase {
 public:
  CImageRgb() : CImageConcreteBase(ColorKind::Rgb) {}
  // Interleaved files name the sample order of a pixel in one token ("BGR");
  // planar files name the planes in file order, one letter per token ("B G R").
  bool Load(uint8_t* data, uint64_t byte_count, uint32_t width, uint32_t height,
            std::string_view layout, int32_t bpp) override;
  void DescribeLayout(const FormatExpression& format) override;

  // Decoded pictures (not raw files) carry this mark.
  void SetFromPicture(bool from_picture) { from_picture_ = from_picture; }
  bool FromPicture() const { return from_picture_; }
  // The letter order of the file ("RGB", "BGR", ...) and whether it was planar;
  // saving in the original packing writes them back.
  const std::string& LetterOrder() const { return letters_; }
  bool Planar() const { return planar_; }

 protected:
  std::unique_ptr<CImageConcreteBase> NewEmptyLike() const override;
  bool RenderDisplay(DisplayRendition& out, IParallelRunner* runner) const override;
  WriterLayout DescribeForWriter() const override;

 private:
  bool from_picture_ = false;
  std::string letters_ = "RGB";
  bool planar_ = false;
};

}  // namespace korvanel
