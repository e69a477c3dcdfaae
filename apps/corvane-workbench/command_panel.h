#pragma once
// The command line: the transcript of prompts, answers and messages above a
// line where the user types; Up and Down walk through the lines typed before.
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStringList>
#include <QWidget>
#include <string_view>

namespace workbench {

class CommandPanel : public QWidget {
  Q_OBJECT

 public:
  explicit CommandPanel(QWidget* parent = nullptr);

  // Text the host wrote to its transcript, as it comes.
  void appendTranscript(std::string_view utf8);
  // The prompt waiting for the line (shown beside it).
  void setPrompt(const QString& prompt);
  // Types a line as if the user had typed it and pressed Enter.
  void typeLine(const QString& line);
  QString transcriptText() const { return transcript_->toPlainText(); }
  const QStringList& history() const { return history_; }
  QLineEdit* input() { return input_; }

 signals:
  void lineEntered(const QString& line);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void enter();

  QPlainTextEdit* transcript_;
  QLabel* prompt_;
  QLineEdit* input_;
  QStringList history_;
  int historyAt_ = 0;  // history_.size() while not walking it
};

}  // namespace workbench
