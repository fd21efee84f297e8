#include "qt/QtFixture.h"

#include <QTimer>

#include "adapters/qt/Qt.h"

namespace kartix::tests {
namespace {

constexpr int patienceMs = 20'000;

/// The application object of the whole run, made as the component makes it.
class OneApplication : public testing::Environment {
 public:
  OneApplication() { qputenv("QT_QPA_PLATFORM", "offscreen"); }
  void SetUp() override {
    stage_ = adapters::makeQtStage();
    ASSERT_FALSE(stage_->onScreen());
    ASSERT_NE(QCoreApplication::instance(), nullptr);
  }
  void TearDown() override { stage_.reset(); }

 private:
  std::unique_ptr<platform::Stage> stage_;
};

const auto* const application = testing::AddGlobalTestEnvironment(new OneApplication);

}  // namespace

QtWindows::QtWindows() : clerk(adapters::makeQtUserInterface()), samples(*clerk) {}

void QtWindows::show(forms::Form& form, const std::function<void(QDialog&)>& act) {
  QTimer late;
  QObject::connect(&late, &QTimer::timeout, [&] {
    ADD_FAILURE() << form.name() << " does not end";
    form.hide();
  });
  late.setSingleShot(true);
  late.start(patienceMs);
  const QWidget* const before = QApplication::activeModalWidget();
  QTimer look;
  bool acted = false;
  QObject::connect(&look, &QTimer::timeout, [&] {
    auto* const window = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (!window || window == before || !form.shown()) return;
    look.stop();
    settle();
    acted = true;
    act(*window);
    form.hide();
  });
  look.start(5);
  EXPECT_EQ(clerk->showModal(form), platform::UserInterface::ShowResult::ended);
  EXPECT_TRUE(acted);
}

void settle() {
  for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
}

}  // namespace kartix::tests
