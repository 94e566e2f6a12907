// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chat/BubbleTable/UIBubbleTableView.h"

#include <QFont>
#include <QPointer>
#include <QQmlParserStatus>
#include <QtQml/qqmlregistration.h>

namespace cvtamber {

// Tells a bubble table how it is shown: in the font of the application, the sizes of texts, the device and the width.
//
// Nothing is told before all of it is known: each word may have the table measure its texts anew.
// Thread: main thread. Owner: the view of the table.
class BubbleMetrics : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(cvtamber::UIBubbleTableView *table READ table WRITE setTable NOTIFY changed REQUIRED FINAL)
    Q_PROPERTY(double textScale READ textScale WRITE setTextScale NOTIFY changed FINAL)
    // In pixels, of the page's title.
    Q_PROPERTY(int titleSize READ titleSize WRITE setTitleSize NOTIFY changed FINAL)
    Q_PROPERTY(bool tablet READ isTablet WRITE setTablet NOTIFY changed FINAL)
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY changed FINAL)
    // What the texts in bubbles are drawn in.
    Q_PROPERTY(QFont textFont READ textFont NOTIFY textFontChanged FINAL)

public:
    explicit BubbleMetrics(QObject *parent = nullptr);

    UIBubbleTableView *table() const { return _table; }
    void setTable(UIBubbleTableView *table);
    double textScale() const { return _appearance.textScale; }
    void setTextScale(double scale);
    int titleSize() const { return _appearance.titleSize; }
    void setTitleSize(int size);
    bool isTablet() const { return _appearance.isTablet; }
    void setTablet(bool tablet);
    double width() const { return _appearance.width; }
    void setWidth(double width);
    QFont textFont() const;

    // To the clipboard.
    Q_INVOKABLE void copy(const QString &text) const;

    bool eventFilter(QObject *watched, QEvent *event) override;
    void classBegin() override {}
    void componentComplete() override;

signals:
    void changed();
    void textFontChanged();

private:
    void tellFont();
    void tellAppearance();

    QPointer<UIBubbleTableView> _table;
    BubbleAppearance _appearance;
    bool _isComplete = false;
};

} // namespace cvtamber
