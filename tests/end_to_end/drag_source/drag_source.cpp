// A window to drag files from, each argument after the place a row: the file manager beside the editor.
#include <QApplication>
#include <QDrag>
#include <QFileInfo>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QTextStream>
#include <QUrl>

namespace {

void tell(const char* what) { QTextStream(stdout) << what << Qt::endl; }

/// Begins the drag where it is pressed; tells on the standard output whether the place under the pointer takes the
/// file.
class File : public QLabel {
 public:
  explicit File(const QString& path) : QLabel(QFileInfo(path).fileName()), path_(path) {
    setWindowTitle("Drag " + text());
  }
  void mousePressEvent(QMouseEvent*) override {
    auto* data = new QMimeData;
    data->setUrls({QUrl::fromLocalFile(path_)});
    auto* drag = new QDrag(this);
    drag->setMimeData(data);
    connect(drag, &QDrag::actionChanged, this,
            [](Qt::DropAction action) { tell(action == Qt::IgnoreAction ? "refused" : "taken"); });
    tell("begins");
    tell(drag->exec(Qt::CopyAction) == Qt::CopyAction ? "dropped" : "left");
  }

 private:
  QString path_;
};

}  // namespace

int main(int count, char** words) {
  QApplication application(count, words);
  QStringList arguments = application.arguments();
  const int left = arguments.value(1).toInt();
  for (int row = 0; row + 2 < arguments.size(); row++) {
    auto* file = new File(arguments[row + 2]);
    file->setGeometry(left, row * 100, 150, 60);
    file->show();
  }
  return application.exec();
}
