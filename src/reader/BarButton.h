#pragma once

#include <QAbstractButton>

#include <optional>

namespace Quillory {

// A button of the reader's bars: a symbol, a text or both. Clicks leave the keyboard where it is, Tab reaches it, and
// Space and Return press it. Costs next to nothing until it is painted. GUI thread only.
class BarButton : public QAbstractButton {
    Q_OBJECT
public:
    enum class Look { plain, framed, prominent };
    // What the button sets, as assistive programs are told.
    struct Value {
        double number = 0;
        QString text;
        bool operator==(Value const&) const = default;
    };

    static constexpr int side = 28; // points, of a button with a symbol alone

    // `label` is for assistive programs, `help` for everybody.
    BarButton(QString symbol, QString const& label, QString const& help, QWidget* parent);
    // With a text, which is its label.
    static BarButton* withText(QString const& text, QString const& help, Look look, QWidget* parent);

    void setSymbol(QString const& symbol);
    QString const& symbol() const { return m_symbol; }
    void setLook(Look look) { m_look = look; }
    void setValue(Value const& value);
    std::optional<Value> const& value() const { return m_value; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QString m_symbol;
    Look m_look = Look::plain;
    std::optional<Value> m_value;
};

}
