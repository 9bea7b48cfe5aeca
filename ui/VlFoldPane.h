#pragma once

#include <QObject>
#include <QString>

class QLabel;
class QWidget;
class VlPushButton;

// A fold-out pane of a dialog: a show button and a hide button meant for the same layout cell
// (only one is visible), and a text pane of fixed height that starts hidden. Opening the pane
// makes the dialog taller by the pane's height, closing it gives that height back, so the rest of
// the dialog keeps its size.
class VlFoldPane : public QObject
{
    Q_OBJECT

public:
    static constexpr int kPaneHeight = 60;

    explicit VlFoldPane(QWidget* dialog);

    // Captions and pictures of the two buttons; called again on a language change.
    void SetCaptions(const QString& showText, const QString& hideText);
    void SetIcons(const QString& showImage, const QString& hideImage);
    void SetMinimumButtonWidth(int width);

    VlPushButton* GetShowButton() const { return m_pShow; }
    VlPushButton* GetHideButton() const { return m_pHide; }
    QLabel* GetPane() const { return m_pPane; }
    bool IsOpen() const { return m_bOpen; }
    // Enables the show button; the hide button stays usable while the pane is open.
    void SetEnabled(bool enabled);
    void SetText(const QString& text);

signals:
    // Emitted before the pane shows, so that its owner can fill it.
    void SignalOpening();

public slots:
    void Open();
    void Close();

private:
    QWidget* m_pDialog;
    VlPushButton* m_pShow;
    VlPushButton* m_pHide;
    QLabel* m_pPane;
    bool m_bOpen = false;
};
