#include "platform/qt/style.h"

#include <QPainter>
#include <QProxyStyle>
#include <QStyleOption>

#include "platform/qt/native.h"

namespace platform::qt {

namespace {

constexpr double corner = 2.5;
constexpr int scrollBarExtent = 13, indicatorSide = 13, sliderLength = 9, sliderThickness = 15;

void drawPanel(QPainter* painter, const QRect& rect, QColor face, QColor border) {
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(QPen(border, 1));
  painter->setBrush(face);
  painter->drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);
  painter->restore();
}

/// Of boxes and knobs that must stand out from the face in both themes.
QColor outline(const QPalette& palette) {
  QColor colour = palette.color(QPalette::PlaceholderText);
  colour.setAlphaF(0.75f);
  return colour;
}

struct Style : QProxyStyle {
  Style() : QProxyStyle("Fusion") {}
  int pixelMetric(PixelMetric, const QStyleOption*, const QWidget*) const override;
  int styleHint(StyleHint, const QStyleOption*, const QWidget*, QStyleHintReturn*) const override;
  QSize sizeFromContents(ContentsType, const QStyleOption*, const QSize&, const QWidget*) const override;
  QIcon standardIcon(StandardPixmap, const QStyleOption*, const QWidget*) const override;
  void drawPrimitive(PrimitiveElement, const QStyleOption*, QPainter*, const QWidget*) const override;
  void drawComplexControl(ComplexControl, const QStyleOptionComplex*, QPainter*, const QWidget*) const override;
  void drawIndicator(PrimitiveElement, const QStyleOption*, QPainter*) const;
  void drawSlider(const QStyleOptionSlider*, QPainter*, const QWidget*) const;
  void drawScrollBar(const QStyleOptionSlider*, QPainter*, const QWidget*) const;
};

int Style::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  switch (metric) {
    case PM_ScrollBarExtent:
      return scrollBarExtent;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
      return indicatorSide;
    case PM_SliderLength:
      return sliderLength;
    case PM_SliderThickness:
    case PM_SliderControlThickness:
      return sliderThickness;
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
      return 5;
    case PM_ButtonMargin:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
      return 0;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* more) const {
  switch (hint) {
    case SH_ComboBox_Popup:
    case SH_EtchDisabledText:
    case SH_UnderlineShortcut:
    case SH_DialogButtonBox_ButtonsHaveIcons:
      return 0;
    default:
      return QProxyStyle::styleHint(hint, option, widget, more);
  }
}

/// Where a layout decides: buttons that are easy to hit.
QSize Style::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                              const QWidget* widget) const {
  QSize needed = QProxyStyle::sizeFromContents(type, option, size, widget);
  return type == CT_PushButton ? needed.expandedTo({76, 24}) : needed;
}

QIcon Style::standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const {
  struct Row {
    StandardPixmap which;
    const char* drawing;
    QRgb colour;
  };
  static constexpr Row rows[] = {{SP_MessageBoxWarning, "box_warning", 0xFFE0A030},
                                 {SP_MessageBoxCritical, "box_critical", 0xFFD9534F},
                                 {SP_MessageBoxInformation, "box_information", 0xFF3D7EBF},
                                 {SP_MessageBoxQuestion, "box_question", 0xFF3D7EBF}};
  for (const Row& row : rows)
    if (row.which == which) return colouredIcon(row.drawing, row.colour);
  return QProxyStyle::standardIcon(which, option, widget);
}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
  const QPalette& palette = option->palette;
  bool enabled = option->state & State_Enabled, focused = option->state & State_HasFocus;
  switch (element) {
    case PE_PanelButtonCommand: {
      bool down = option->state & (State_Sunken | State_On), hover = option->state & State_MouseOver;
      QColor face = palette.color(QPalette::Button);
      if (enabled && hover) face = palette.color(QPalette::Midlight);
      if (down) face = palette.color(enabled ? QPalette::Highlight : QPalette::Mid);
      auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
      bool marked = enabled && (focused || (button && (button->features & QStyleOptionButton::DefaultButton)));
      drawPanel(painter, option->rect, face, palette.color(marked ? QPalette::Highlight : QPalette::Mid));
      return;
    }
    case PE_IndicatorCheckBox:
    case PE_IndicatorRadioButton:
      return drawIndicator(element, option, painter);
    case PE_FrameFocusRect:
      return;  // the border says it
    case PE_PanelLineEdit:
    case PE_FrameLineEdit: {
      auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
      if (frame && frame->lineWidth > 0)
        drawPanel(painter, option->rect, palette.color(QPalette::Base),
                  palette.color(enabled && focused ? QPalette::Highlight : QPalette::Mid));
      else
        painter->fillRect(option->rect, palette.color(QPalette::Base));
      if (!(frame && frame->lineWidth > 0) && enabled && focused)
        painter->fillRect(QRect(option->rect.x(), option->rect.bottom(), option->rect.width(), 1),
                          palette.color(QPalette::Highlight));
      return;
    }
    default:
      QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

void Style::drawIndicator(PrimitiveElement element, const QStyleOption* option, QPainter* painter) const {
  const QPalette& palette = option->palette;
  bool enabled = option->state & State_Enabled, on = option->state & State_On;
  bool marked = enabled && (option->state & (State_HasFocus | State_MouseOver));
  QRectF box = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
  QColor face = palette.color(on && enabled ? QPalette::Highlight : on ? QPalette::Mid : QPalette::Base);
  QColor mark = palette.color(enabled ? QPalette::HighlightedText : QPalette::PlaceholderText);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(QPen(marked || (on && enabled) ? palette.color(QPalette::Highlight) : outline(palette), 1));
  painter->setBrush(face);
  if (element == PE_IndicatorCheckBox) {
    painter->drawRoundedRect(box, corner, corner);
    const QPointF tick[] = {box.topLeft() + QPointF(2.8, 6.3), box.topLeft() + QPointF(5.2, 8.7),
                            box.topLeft() + QPointF(9.4, 3.6)};
    painter->setPen(QPen(mark, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (on) painter->drawPolyline(tick, 3);
  } else {
    painter->drawEllipse(box);
    painter->setPen(Qt::NoPen);
    painter->setBrush(mark);
    if (on) painter->drawEllipse(box.center(), 2.5, 2.5);
  }
  painter->restore();
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                               const QWidget* widget) const {
  auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control == CC_Slider && slider) return drawSlider(slider, painter, widget);
  if (control == CC_ScrollBar && slider) return drawScrollBar(slider, painter, widget);
  if (auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option); control == CC_ComboBox && box) {
    bool enabled = box->state & State_Enabled, hover = box->state & State_MouseOver;
    drawPanel(painter, box->rect, box->palette.color(enabled && hover ? QPalette::Midlight : QPalette::Button),
              box->palette.color(enabled && (box->state & State_HasFocus) ? QPalette::Highlight : QPalette::Mid));
    QRect arrow = subControlRect(CC_ComboBox, option, SC_ComboBoxArrow, widget);
    QPointF middle = QRectF(arrow).center();
    const QPointF tip[] = {middle + QPointF(-3.5, -1.5), middle + QPointF(3.5, -1.5), middle + QPointF(0, 2.5)};
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(box->palette.color(QPalette::ButtonText));
    painter->drawPolygon(tip, 3);
    painter->restore();
    return;
  }
  QProxyStyle::drawComplexControl(control, option, painter, widget);
}

/// A thin groove, filled up to the handle.
void Style::drawSlider(const QStyleOptionSlider* option, QPainter* painter, const QWidget* widget) const {
  const QPalette& palette = option->palette;
  bool enabled = option->state & State_Enabled, focused = option->state & State_HasFocus;
  bool active = option->activeSubControls & SC_SliderHandle;
  QRectF handle = subControlRect(CC_Slider, option, SC_SliderHandle, widget);
  QRectF whole(option->rect);
  bool horizontal = option->orientation == Qt::Horizontal;
  QRectF groove = horizontal ? QRectF(whole.left() + 2, whole.center().y() - 1.5, whole.width() - 4, 3)
                             : QRectF(whole.center().x() - 1.5, whole.top() + 2, 3, whole.height() - 4);
  QRectF filled = groove;
  if (horizontal)
    option->upsideDown ? filled.setLeft(handle.center().x()) : filled.setRight(handle.center().x());
  else
    filled.setTop(handle.center().y());
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(Qt::NoPen);
  painter->setBrush(palette.color(QPalette::Mid));
  painter->drawRoundedRect(groove, 1.5, 1.5);
  if (enabled) {
    painter->setBrush(palette.color(QPalette::Highlight));
    painter->drawRoundedRect(filled, 1.5, 1.5);
  }
  QRectF knob = horizontal ? QRectF(handle.left() + 0.5, whole.center().y() - 6.5, handle.width() - 1, 13)
                           : QRectF(whole.center().x() - 6.5, handle.top() + 0.5, 13, handle.height() - 1);
  bool dark = palette.color(QPalette::Window).lightness() < 128;
  QColor face = palette.color(enabled && dark ? QPalette::ButtonText : QPalette::Button);
  painter->setPen(QPen(enabled && (focused || active) ? palette.color(QPalette::Highlight) : outline(palette), 1));
  painter->setBrush(enabled && dark && !active ? face.darker(115) : face);
  painter->drawRoundedRect(knob, corner, corner);
  painter->restore();
}

/// A thumb on a plain lane; the arrows at the ends are left out.
void Style::drawScrollBar(const QStyleOptionSlider* option, QPainter* painter, const QWidget* widget) const {
  const QPalette& palette = option->palette;
  painter->fillRect(option->rect, palette.color(QPalette::Base));
  if (!(option->state & State_Enabled) || option->minimum == option->maximum) return;
  QRectF thumb = QRectF(subControlRect(CC_ScrollBar, option, SC_ScrollBarSlider, widget)).adjusted(2, 2, -2, -2);
  bool active = option->activeSubControls & SC_ScrollBarSlider;
  QColor face = palette.color(QPalette::PlaceholderText);
  if (!active) face.setAlphaF(0.55f);
  if (active && (option->state & State_Sunken)) face = palette.color(QPalette::Highlight);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(Qt::NoPen);
  painter->setBrush(face);
  double radius = std::min(thumb.width(), thumb.height()) / 2;
  painter->drawRoundedRect(thumb, radius, radius);
  painter->restore();
}

}  // namespace

QStyle* createStyle() { return new Style; }

}  // namespace platform::qt
