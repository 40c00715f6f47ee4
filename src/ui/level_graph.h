#pragma once
// "Graph" of the analog dialog: the input's measuring range as a scale in
// its own unit, the states LOW, MEDIUM and HIGH, the two levels and the
// hysteresis band around each. A band edge outside the range, or bands that
// overlap, are drawn in red: what the level check on OK will refuse can be
// seen while typing.

#include <QWidget>

#include <optional>

#include "settings/measuring_range.h"

namespace rm8::ui {

class LevelGraph : public QWidget {
    Q_OBJECT

public:
    // A level with its hysteresis, in the unit of the range.
    struct Level {
        double value = 0;
        double band = 0;

        friend bool operator==(const Level&, const Level&) = default;
    };

    explicit LevelGraph(QWidget* parent = nullptr);

    void setRange(const MeasuringRange& range);
    // The level fields' texts; a text that is no number leaves its level
    // out of the drawing.
    void setLevels(const QString& cl1, const QString& hcl1, const QString& cl2, const QString& hcl2);

    const MeasuringRange& range() const { return range_; }
    const std::optional<Level>& level1() const { return level1_; }
    const std::optional<Level>& level2() const { return level2_; }

    // The horizontal position of a value of the range inside the widget.
    double position(double value) const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString format(double value) const;

    MeasuringRange range_;
    std::optional<Level> level1_;
    std::optional<Level> level2_;
};

} // namespace rm8::ui
