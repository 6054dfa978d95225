#include "TextBlock.h"

#include "Picture.h"

#include <QCache>
#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace {

constexpr double unlimitedWidth = 1e6;
/// As many characters of broken texts are kept, which is more than a window shows.
constexpr int keptCharacters = 40'000;

double lineHeightOf(const QFont& font)
{
    return std::ceil(QFontMetricsF(font).height());
}

/// Lines of a text that runs as its own letters do, not as the window does: numbers stay numbers in a mirrored one.
QTextOption breaking(const QString& text, Qt::Alignment alignment)
{
    QTextOption option(alignment | Qt::AlignAbsolute);
    option.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    return option;
}

/// Breaks the text into lines of the font's height and gives their widest.
double breakIntoLines(QTextLayout& layout, double width, double lineHeight)
{
    double widest = 0;
    double top = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width > 0 ? width : unlimitedWidth);
        line.setPosition({ 0, top });
        top += lineHeight;
        widest = std::max(widest, line.naturalTextWidth());
    }
    layout.endLayout();
    return widest;
}

/// A text broken into lines within a width, each from the left.
struct BrokenText {
    std::unique_ptr<QTextLayout> layout;
    double width = 0;
    double widest = 0;
    double lineHeight = 0;

    /// Whether the lines would be the same within that width: what fits still does, and nothing more did before.
    bool isBrokenAsWithin(double other) const
    {
        return other == width || (other >= widest && (other <= width || layout->lineCount() == 1));
    }
};

struct TextKey {
    QString text;
    QFont font;
    bool operator==(const TextKey&) const = default;
};

std::size_t qHash(const TextKey& key, std::size_t seed = 0)
{
    return qHashMulti(seed, key.text, key.font);
}

/// The text's lines within that width. They are kept, as most texts are measured twice and drawn many times; by each
/// thread for itself, as fonts are.
std::shared_ptr<const BrokenText> brokenText(const TextKey& key, double width)
{
    thread_local QCache<TextKey, std::shared_ptr<const BrokenText>> kept { keptCharacters };
    const double within = width > 0 ? width : unlimitedWidth;
    if (const auto* known = kept.object(key); known && (*known)->isBrokenAsWithin(within))
        return *known;
    auto fresh = std::make_shared<BrokenText>();
    fresh->layout = std::make_unique<QTextLayout>(key.text, key.font);
    fresh->layout->setTextOption(breaking(key.text, Qt::AlignLeft));
    fresh->width = within;
    fresh->lineHeight = lineHeightOf(key.font);
    fresh->widest = breakIntoLines(*fresh->layout, within, fresh->lineHeight);
    kept.insert(key, new std::shared_ptr<const BrokenText>(fresh), static_cast<int>(key.text.size()) + 1);
    return fresh;
}

void drawLines(QPainter& painter, const BrokenText& text, const QRectF& frame, Qt::Alignment alignment)
{
    const double height = text.lineHeight * text.layout->lineCount();
    const double top = frame.top() + (frame.height() - height) / 2;
    for (int i = 0; i < text.layout->lineCount(); ++i) {
        const QTextLine line = text.layout->lineAt(i);
        const double free = frame.width() - line.naturalTextWidth();
        const double indent = alignment & Qt::AlignRight ? free : alignment & Qt::AlignHCenter ? free / 2 : 0;
        line.draw(&painter, { frame.left() + indent, top });
    }
}

QString withLineSeparators(QString text)
{
    return text.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
}

Qt::Alignment alignmentOf(NSTextAlignment alignment, bool mirrored)
{
    switch (alignment) {
    case NSTextAlignment::Center:
        return Qt::AlignHCenter;
    case NSTextAlignment::Right:
        return mirrored ? Qt::AlignLeft : Qt::AlignRight;
    case NSTextAlignment::Justified:
        return Qt::AlignJustify;
    default:
        return mirrored ? Qt::AlignRight : Qt::AlignLeft;
    }
}

/// A line of an attributed text: its place in the whole, and what is drawn.
struct Paragraph {
    qsizetype start = 0;
    QString text;
    QImage image;
    QSizeF imageSize;
    double spacing = 0;
    double height = 0;
    std::shared_ptr<QTextLayout> layout;
};

/// Lays an attributed text out, a paragraph for each of its lines; a picture stands before the text of its line.
class AttributedLayout {
public:
    AttributedLayout(const UILabel& label, double width, const Theme& theme)
        : _label(label)
        , _width(width)
        , _theme(theme)
    {
        qsizetype start = 0;
        const auto lines = QString::fromStdString(label.attributedText()->string()).split(QLatin1Char('\n'));
        for (const QString& line : lines) {
            _paragraphs.push_back(paragraph(line, start));
            start += line.size() + 1;
        }
    }

    void draw(QPainter& painter, const QRectF& frame) const
    {
        double height = 0;
        for (const Paragraph& paragraph : _paragraphs)
            height += paragraph.height;
        double top = frame.top() + (frame.height() - height) / 2;
        for (const Paragraph& paragraph : _paragraphs) {
            if (!paragraph.image.isNull())
                painter.drawImage(
                    QRectF({ frame.center().x() - paragraph.imageSize.width() / 2, top }, paragraph.imageSize),
                    paragraph.image);
            paragraph.layout->draw(&painter, { frame.left(), top });
            top += paragraph.height;
        }
    }

private:
    Paragraph paragraph(const QString& line, qsizetype start) const
    {
        Paragraph result;
        result.start = start;
        result.text = line;
        Qt::Alignment alignment = alignmentOf(_label.textAlignment(), false);
        QFont tallest = _theme.fontFor(_label.font());
        QList<QTextLayout::FormatRange> formats;
        for (const auto& run : _label.attributedText()->runs())
            addRun(run, result, formats, alignment, tallest);
        result.layout = std::make_shared<QTextLayout>(
            QString(result.text).remove(QChar(QChar::ObjectReplacementCharacter)), tallest);
        result.layout->setFormats(formats);
        result.layout->setTextOption(breaking(result.text, alignment));
        const double lineHeight = lineHeightOf(tallest);
        breakIntoLines(*result.layout, _width, lineHeight);
        const double texts =
            result.layout->text().isEmpty() && !result.image.isNull() ? 0 : lineHeight * result.layout->lineCount();
        result.height = texts + result.imageSize.height() + result.spacing;
        return result;
    }

    void addRun(const NSAttributedString::Run& run, Paragraph& paragraph, QList<QTextLayout::FormatRange>& formats,
        Qt::Alignment& alignment, QFont& tallest) const
    {
        const auto first = std::max(static_cast<qsizetype>(run.range.location), paragraph.start);
        const auto last = std::min(
            static_cast<qsizetype>(run.range.location + run.range.length), paragraph.start + paragraph.text.size());
        if (first >= last)
            return;
        const TextAttributes& attributes = run.attributes;
        if (attributes.attachment && attributes.attachment->image) {
            paragraph.image = imageOf(*attributes.attachment->image);
            const CGSize size = attributes.attachment->image->size();
            paragraph.imageSize = QSizeF(size.width, size.height);
        }
        if (attributes.paragraphStyle) {
            alignment = alignmentOf(attributes.paragraphStyle->alignment, false);
            paragraph.spacing = attributes.paragraphStyle->lineSpacing;
        }
        if (!attributes.font)
            return;
        QTextCharFormat format;
        const QFont font = _theme.fontFor(*attributes.font);
        format.setFont(font);
        tallest = first == paragraph.start || font.pixelSize() > tallest.pixelSize() ? font : tallest;
        formats.push_back(
            { static_cast<int>(first - paragraph.start), static_cast<int>(last - first), std::move(format) });
    }

    const UILabel& _label;
    double _width;
    const Theme& _theme;
    std::vector<Paragraph> _paragraphs;
};

} // namespace

QSizeF TextBlock::size(double width) const
{
    const auto broken = brokenText({ withLineSeparators(text), font }, width);
    const long all = broken->layout->lineCount();
    const long count = lines > 0 ? std::min(lines, all) : all;
    return { std::ceil(broken->widest), broken->lineHeight * static_cast<double>(count) };
}

void TextBlock::draw(QPainter& painter, const QRectF& frame, Qt::Alignment alignment) const
{
    const auto broken = brokenText({ withLineSeparators(text), font }, frame.width());
    const QTextLayout& layout = *broken->layout;
    const int most = lines > 0 ? static_cast<int>(lines) : layout.lineCount();
    if (layout.lineCount() > most) {
        const int start = layout.lineAt(most - 1).textStart();
        const QString rest = QFontMetricsF(font).elidedText(layout.text().mid(start), Qt::ElideRight, frame.width());
        TextBlock { layout.text().left(start).trimmed() + (start > 0 ? QStringLiteral("\n") : QString()) + rest, font,
            0 }
            .draw(painter, frame, alignment);
        return;
    }
    drawLines(painter, *broken, frame, alignment);
}

void drawLabel(QPainter& painter, const UILabel& label, const QRectF& frame, const Theme& theme, bool mirrored)
{
    painter.setPen(label.textColor() ? colorOf(*label.textColor()) : theme.textColor());
    if (label.attributedText()) {
        AttributedLayout(label, frame.width(), theme).draw(painter, frame);
        return;
    }
    if (label.text() && !label.text()->empty())
        TextBlock { QString::fromStdString(*label.text()), theme.fontFor(label.font()), label.numberOfLines() }.draw(
            painter, frame, alignmentOf(label.textAlignment(), mirrored));
}

TextSize QtTextMeasure::measure(
    const std::string& text, const std::string& fontName, double fontSize, double width) const
{
    if (!_theme)
        return {};
    const QSizeF size =
        TextBlock { QString::fromStdString(text), _theme->fontFor({ fontName, fontSize }), 0 }.size(width);
    return { size.width(), size.height() };
}
