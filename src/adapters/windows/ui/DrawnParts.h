#pragma once

#include <memory>
#include <optional>
#include <string>

#include "adapters/windows/ui/GdiPlus.h"
#include "adapters/windows/ui/Part.h"

namespace kartix::adapters::native {

class CardPart;

/// A control that we draw. What lies on the card has the card for its ground.
class DrawnPart : public Part {
 public:
  DrawnPart(const Element& element, forms::Control* control, const Look& look, const CardPart* card);
  void draw(const DRAWITEMSTRUCT& target) override;

 protected:
  /// Draws the content on its ground.
  virtual void paint(HDC context, Size size) = 0;
  void redraw() const { InvalidateRect(handle(), nullptr, FALSE); }

 private:
  void paintGround(HDC context, Size size) const;

  const CardPart* card_;
};

/// The face of the card.
class CardPart : public DrawnPart {
 public:
  CardPart(const Element& element, forms::Control* control, const Look& look);
  /// Copies the piece of the card that lies under `part`.
  void paintUnder(const Part& part, HDC context, Size size) const;

 protected:
  void paint(HDC context, Size size) override;

 private:
  const Canvas& face(HDC like, Size size) const;

  mutable std::unique_ptr<Canvas> face_;
  mutable Size faceSize_;
};

/// A line that parts two things.
class RulePart : public DrawnPart {
 public:
  RulePart(const Element& element, const Look& look, const CardPart* card)
      : DrawnPart(element, nullptr, look, card) {}

 protected:
  void paint(HDC context, Size size) override;
  Size natural() const override { return {0, look().pixels(3)}; }
};

/// A text on the card. One that "shrinks" has a fixed place: what is too long for it is written smaller, and cut off
/// with an ellipsis only when that does not help.
class CardTextPart : public DrawnPart {
 public:
  CardTextPart(const Element& element, forms::Control* control, const Look& look, const CardPart* card);
  void restyle() override;
  /// The whole text where not all of it is seen; empty where it is.
  std::wstring hidden() const;

 protected:
  void show() override;
  void paint(HDC context, Size size) override;
  Size natural() const override;

 private:
  HFONT fittingFont(int room) const;

  std::optional<std::wstring> shown_;
};

/// An image file, or the drawing that the design names. Of an image file in a place that the design marks for ink,
/// only what is dark is shown.
class PicturePart : public DrawnPart {
 public:
  PicturePart(const Element& element, forms::Picture* control, const Look& look, const CardPart* card);
  void restyle() override;

 protected:
  void show() override;
  void paint(HDC context, Size size) override;

 private:
  void load();

  forms::Picture* control_;
  std::wstring shown_;
  std::unique_ptr<Gdiplus::Bitmap> picture_;
};

}  // namespace kartix::adapters::native
