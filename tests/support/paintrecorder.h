#ifndef PAINTRECORDER_H
#define PAINTRECORDER_H

#include <QList>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPointF>
#include <QString>

// A paint device that draws nothing and keeps every piece of text painted on it, with the
// baseline origin where it was placed, so that tests can read labels without reading
// glyphs. Each laid-out line arrives as its own piece.
class PaintRecorder : public QPaintDevice
{
public:
    struct Text
    {
        QPointF at;
        QString text;
    };

    PaintRecorder(int width, int height) : m_width(width), m_height(height), m_engine(&texts) {}
    ~PaintRecorder() override = default;

    QPaintEngine* paintEngine() const override { return &m_engine; }

    // The pieces whose origin lies in [left, right) x [top, bottom).
    QStringList textsIn(double left, double top, double right, double bottom) const
    {
        QStringList found;
        for (const Text& t : texts)
            if (t.at.x() >= left && t.at.x() < right && t.at.y() >= top && t.at.y() < bottom)
                found.append(t.text);
        return found;
    }

    QList<Text> texts;

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
            return m_width;
        case PdmHeight:
            return m_height;
        case PdmWidthMM:
            return m_width * 254 / 960;
        case PdmHeightMM:
            return m_height * 254 / 960;
        case PdmNumColors:
            return INT_MAX;
        case PdmDepth:
            return 32;
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return 96;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return int(devicePixelRatioFScale());
        }
        return 0;
    }

private:
    class Engine : public QPaintEngine
    {
    public:
        explicit Engine(QList<Text>* texts) : QPaintEngine(AllFeatures), m_texts(texts) {}
        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState&) override {}
        void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
        void drawPath(const QPainterPath&) override {}
        void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
        void drawPolygon(const QPoint*, int, PolygonDrawMode) override {}
        void drawTextItem(const QPointF& at, const QTextItem& item) override
        {
            m_texts->append({at, item.text()});
        }
        Type type() const override { return User; }

    private:
        QList<Text>* m_texts;
    };

    int m_width;
    int m_height;
    mutable Engine m_engine;
};

#endif
