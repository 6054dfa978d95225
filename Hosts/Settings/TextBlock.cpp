#include "TextBlock.h"

#include "Picture.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace {

constexpr double unlimitedWidth = 1e6;

double lineHeightOf(const QFont& font)
{
    return std::ceil(QFontMetricsF(font).height());
}

QTextOption breaking(Qt::Alignment alignment)
{
    QTextOption option(alignment | Qt::AlignAbsolute);
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
        result.layout->setTextOption(breaking(alignment));
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
    const double lineHeight = lineHeightOf(font);
    QTextLayout layout(withLineSeparators(text), font);
    layout.setTextOption(breaking(Qt::AlignLeft));
    const double widest = breakIntoLines(layout, width, lineHeight);
    const long count = lines > 0 ? std::min<long>(lines, layout.lineCount()) : layout.lineCount();
    return { std::ceil(widest), lineHeight * static_cast<double>(count) };
}

void TextBlock::draw(QPainter& painter, const QRectF& frame, Qt::Alignment alignment) const
{
    const double lineHeight = lineHeightOf(font);
    QTextLayout layout(withLineSeparators(text), font);
    layout.setTextOption(breaking(alignment));
    breakIntoLines(layout, frame.width(), lineHeight);
    const int most = lines > 0 ? static_cast<int>(lines) : layout.lineCount();
    if (layout.lineCount() > most) {
        const int start = layout.lineAt(most - 1).textStart();
        const QString rest = QFontMetricsF(font).elidedText(layout.text().mid(start), Qt::ElideRight, frame.width());
        TextBlock { layout.text().left(start).trimmed() + (start > 0 ? QStringLiteral("\n") : QString()) + rest, font,
            0 }
            .draw(painter, frame, alignment);
        return;
    }
    const double height = lineHeight * layout.lineCount();
    layout.draw(&painter, { frame.left(), frame.top() + (frame.height() - height) / 2 });
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
