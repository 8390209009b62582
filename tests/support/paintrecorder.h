#ifndef PAINTRECORDER_H
#define PAINTRECORDER_H

#include <QImage>
#include <QList>
#include <QPaintEngine>
#include <QPointF>
#include <QString>

// An image that draws nothing and keeps every piece of text painted on it, with the
// baseline origin where it was placed, so that tests can read labels without reading
// glyphs. Each laid-out line arrives as its own piece.
class PaintRecorder : public QImage
{
public:
    struct Text
    {
        QPointF at;
        QString text;
    };

    PaintRecorder(int width, int height) : QImage(width, height, Format_RGB32), m_engine(&texts) {}

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

    mutable Engine m_engine;
};

#endif
