#include "ui/level_graph.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace rm8::ui {
namespace {

constexpr int kMargin = 12;
constexpr int kBarTop = 22;
constexpr int kBarHeight = 26;

std::optional<double> number(const QString& text)
{
    QString plain = text.trimmed();
    plain.replace(u',', u'.');
    bool ok = false;
    const double value = plain.toDouble(&ok);
    return ok ? std::optional(value) : std::nullopt;
}

} // namespace

LevelGraph::LevelGraph(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("Graph"));
    setMinimumSize(320, 96);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize LevelGraph::sizeHint() const
{
    return { 440, 96 };
}

void LevelGraph::setRange(const MeasuringRange& range)
{
    range_ = range;
    update();
}

void LevelGraph::setLevels(const QString& cl1, const QString& hcl1, const QString& cl2, const QString& hcl2)
{
    const auto level = [](const QString& value, const QString& band) -> std::optional<Level> {
        const std::optional<double> at = number(value);
        if (!at)
            return std::nullopt;
        return Level { *at, number(band).value_or(0) };
    };
    level1_ = level(cl1, hcl1);
    level2_ = level(cl2, hcl2);
    update();
}

double LevelGraph::position(double value) const
{
    const QFontMetrics metrics(font());
    const double left = kMargin;
    const double right = width() - kMargin - metrics.horizontalAdvance(QString::fromStdString(range_.unit)) - 4;
    const double span = range_.upper - range_.lower;
    if (span <= 0)
        return left;
    return left + (value - range_.lower) / span * (right - left);
}

QString LevelGraph::format(double value) const
{
    return QString::number(value, 'f', std::clamp<int>(range_.decimals, 0, 6));
}

void LevelGraph::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    const QFontMetrics metrics(font());
    const double lower = range_.lower;
    const double upper = range_.upper;
    const auto x
        = [&](double value) { return position(std::clamp(value, std::min(lower, upper), std::max(lower, upper))); };
    const QColor text = palette().text().color();

    // The three states between the ends of the range and the levels.
    const double cut1 = level1_ ? level1_->value : lower;
    const double cut2 = level2_ ? level2_->value : upper;
    const struct {
        double from, to;
        QColor colour;
        const char* name;
    } zones[] = {
        { lower, cut1, QColor(200, 220, 245), "LOW" },
        { cut1, cut2, QColor(205, 235, 200), "MEDIUM" },
        { cut2, upper, QColor(250, 220, 190), "HIGH" },
    };
    for (const auto& zone : zones) {
        const QRectF area(QPointF(x(zone.from), kBarTop), QPointF(x(zone.to), kBarTop + kBarHeight));
        if (area.width() <= 0)
            continue;
        painter.fillRect(area, zone.colour);
        const QString name = QLatin1String(zone.name);
        if (metrics.horizontalAdvance(name) + 4 < area.width()) {
            painter.setPen(text);
            painter.drawText(area, Qt::AlignCenter, name);
        }
    }
    painter.setPen(text);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(QPointF(x(lower), kBarTop), QPointF(x(upper), kBarTop + kBarHeight)));

    // The bands; red where the level check will refuse them.
    const bool overlap = level1_ && level2_ && level1_->value + level1_->band > level2_->value - level2_->band;
    // The lower level's caption ends at its line, the upper one's starts at
    // its line, so that close levels keep both readable.
    const struct {
        const std::optional<Level>& level;
        const char* name;
        bool leftOfLine;
    } levels[] = { { level1_, "CL1", true }, { level2_, "CL2", false } };
    for (const auto& [level, name, leftOfLine] : levels) {
        if (!level)
            continue;
        const double from = level->value - level->band;
        const double to = level->value + level->band;
        const bool wrong = overlap || from < lower || to > upper;
        const QColor edge = wrong ? QColor(200, 0, 0) : text;
        QColor fill = wrong ? QColor(220, 40, 40) : QColor(90, 90, 90);
        fill.setAlpha(70);
        const QRectF band(QPointF(x(from), kBarTop - 4), QPointF(x(to), kBarTop + kBarHeight + 4));
        painter.fillRect(band, fill);
        painter.setPen(QPen(edge, 1, Qt::DashLine));
        painter.drawLine(band.topLeft(), band.bottomLeft());
        painter.drawLine(band.topRight(), band.bottomRight());
        painter.setPen(QPen(edge, 2));
        const double at = x(level->value);
        painter.drawLine(QPointF(at, kBarTop - 6), QPointF(at, kBarTop + kBarHeight + 6));
        const QString caption = QLatin1String(name) + u' ' + format(level->value);
        const double captionWidth = metrics.horizontalAdvance(caption);
        const double left
            = std::clamp(leftOfLine ? at - captionWidth - 3 : at + 3, 0.0, std::max(0.0, width() - captionWidth));
        painter.drawText(QPointF(left, kBarTop - 7), caption);
    }

    // The scale: five steps of the range with its unit.
    painter.setPen(text);
    const double axis = kBarTop + kBarHeight + 10;
    painter.drawLine(QPointF(x(lower), axis), QPointF(x(upper), axis));
    constexpr int kSteps = 5;
    for (int step = 0; step <= kSteps; ++step) {
        const double value = lower + (upper - lower) * step / kSteps;
        const double at = x(value);
        painter.drawLine(QPointF(at, axis), QPointF(at, axis + 4));
        const QString label = format(value);
        const double labelWidth = metrics.horizontalAdvance(label);
        painter.drawText(
            QPointF(std::clamp(at - labelWidth / 2, 0.0, width() - labelWidth), axis + 6 + metrics.ascent()), label);
    }
    painter.drawText(QPointF(x(upper) + 4, axis + metrics.ascent() / 2.0 - 1), QString::fromStdString(range_.unit));
}

} // namespace rm8::ui
