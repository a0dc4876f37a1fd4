#include "frame/forms.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <vector>

#include "frame/remaining_life.h"
#include "suite/defaults.h"
#include "support/scripted_ui.h"

namespace brenlow::frame {
namespace {

// Sibling objects for the start-up tests: they record the order of creation and
// how often the set-up was loaded, and the base services can be made to refuse
// the caller's version.
struct Trace {
    std::vector<std::string> created;
    bool compatible = true;
    bool check_throws = false;
};

class StubBase : public suite::BaseServices {
public:
    StubBase(Trace& t, std::string exe)
        : suite::BaseServices(store::open_database("sqlite:" + exe + "/t.db"), exe, BRENLOW_TEST_DATA_DIR),
          trace_(t) {}
    bool CheckDllsVersion(bool) override {
        if (trace_.check_throws) throw std::runtime_error("no such member");
        return trace_.compatible;
    }

private:
    Trace& trace_;
};

class FormsTest : public ::testing::Test {
protected:
    void SetUp() override {
        dir_ = std::filesystem::temp_directory_path() /
               ("brenlow-forms-" + std::to_string(::getpid()) + "-" +
                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(dir_);
        setenv("BRENLOW_DATA_DIR", BRENLOW_TEST_DATA_DIR, 1);
        catalogue_.add_type<TarrowBase::ClsMain>("TarrowBase.ClsMain", [this] {
            trace_.created.push_back("TarrowBase.ClsMain");
            auto b = std::make_shared<StubBase>(trace_, dir_.string());
            base_ = b;
            return b;
        });
        catalogue_.add_type<Kestbase::Forms>("Kestbase.Forms", [this] {
            trace_.created.push_back("Kestbase.Forms");
            return std::make_shared<suite::BaseForms>(base_);
        });
        catalogue_.add_type<Ostikreport::ClsMain>("Ostikreport.ClsMain", [this] {
            trace_.created.push_back("Ostikreport.ClsMain");
            return std::make_shared<suite::ReportObject>();
        });
        catalogue_.add_type<Halvbase1::Forms>("Halvbase1.Forms", [this] {
            trace_.created.push_back("Halvbase1.Forms");
            return std::make_shared<suite::IncomeTaxForms1>();
        });
        catalogue_.add_type<Halvbase2::Forms>("Halvbase2.Forms", [this] {
            trace_.created.push_back("Halvbase2.Forms");
            return std::make_shared<suite::IncomeTaxForms2>();
        });
    }
    void TearDown() override { std::filesystem::remove_all(dir_); }

    ScreenMakers makers() {
        ScreenMakers m;
        m.formatsch = [this](Component&) {
            ++made_;
            return std::make_shared<Named>("formatsch");
        };
        m.capital = [this](Component&) {
            ++made_;
            return std::make_shared<Named>("capital");
        };
        m.frmNewFATR = [this](Component&) {
            ++made_;
            return std::make_shared<Named>("frmNewFATR");
        };
        return m;
    }

    struct Named : Screen {
        explicit Named(std::string n) : name(std::move(n)) {}
        std::string Caption() const override { return name; }
        std::string name;
    };

    std::filesystem::path dir_;
    Trace trace_;
    suite::Catalogue catalogue_;
    std::shared_ptr<suite::BaseServices> base_;
    test::ScriptedUi ui_;
    int made_ = 0;
};

TEST_F(FormsTest, StartupCreatesTheSiblingsInTheFixedOrderAndReportsTheVersion) {
    Forms forms(catalogue_, ui_, makers());
    EXPECT_EQ(trace_.created,
              (std::vector<std::string>{"TarrowBase.ClsMain", "Kestbase.Forms", "Ostikreport.ClsMain",
                                        "Halvbase1.Forms", "Halvbase2.Forms"}));
    EXPECT_EQ(forms.MyDllVersion(), "2.26.4");
    EXPECT_TRUE(ui_.shown().empty());
    EXPECT_EQ(forms.oClsRep(), forms.component().report);
}

TEST_F(FormsTest, AnIncompatibleBaseShowsTheCriticalMessageAndStartUpGoesOn) {
    trace_.compatible = false;
    Forms forms(catalogue_, ui_, makers());
    ASSERT_EQ(ui_.shown().size(), 1u);
    EXPECT_EQ(ui_.shown()[0].text,
              "File [TarrowBase.dll] is not compatible. Please update the latest software properly.");
    EXPECT_EQ(ui_.shown()[0].icon, MsgIcon::critical);
    EXPECT_EQ(ui_.shown()[0].buttons, "OK");
    ui_.expect_message(
        "File [TarrowBase.dll] is not compatible. Please update the latest software properly.");
    EXPECT_EQ(trace_.created.size(), 5u);
}

TEST_F(FormsTest, AFailingVersionCheckIsSuppressed) {
    trace_.check_throws = true;
    Forms forms(catalogue_, ui_, makers());
    EXPECT_TRUE(ui_.shown().empty());
    EXPECT_EQ(trace_.created.size(), 5u);
}

TEST_F(FormsTest, AMissingSiblingReachesTheCallerOfStartUp) {
    suite::Catalogue partial;
    partial.add_type<TarrowBase::ClsMain>(
        "TarrowBase.ClsMain", [this] { return std::make_shared<StubBase>(trace_, dir_.string()); });
    EXPECT_THROW(Forms(partial, ui_, makers()), std::runtime_error);
}

TEST_F(FormsTest, ScheduleAndCapitalScreensAreMadeOnceRegisterScreensEveryTime) {
    Forms forms(catalogue_, ui_, makers());
    VbBool fix = vbFalse, def = 1;
    auto s1 = forms.ObjFormat(fix, def);
    auto s2 = forms.ObjFormat(fix, def);
    EXPECT_EQ(s1, s2);
    EXPECT_EQ(forms.ObjCapital(), forms.ObjCapital());
    auto r1 = forms.ObjNewFATR();
    auto r2 = forms.ObjNewFATR();
    ASSERT_TRUE(r1 && r2);
    EXPECT_NE(r1, r2);
    EXPECT_EQ(made_, 4);
}

TEST_F(FormsTest, FixOnlyTrueLoadsTheSetUpOnEveryRequestFalseNever) {
    Forms forms(catalogue_, ui_, makers());
    VbBool fix = vbFalse, def = 5;
    forms.ObjFormat(fix, def);
    forms.ObjFormat(fix, def);
    EXPECT_EQ(forms.component().forms->setup_loads(), 0);
    fix = vbTrue;
    forms.ObjFormat(fix, def);
    forms.ObjFormat(fix, def);
    EXPECT_EQ(forms.component().forms->setup_loads(), 2);
    EXPECT_EQ(forms.component().FixOnly, vbTrue);
    EXPECT_EQ(forms.component().SchDef, 5);
    // Only all sixteen bits set count as true.
    fix = 1;
    forms.ObjFormat(fix, def);
    EXPECT_EQ(forms.component().forms->setup_loads(), 2);
}

TEST_F(FormsTest, AScreenThatIsNotAvailableGivesNothing) {
    Forms forms(catalogue_, ui_, ScreenMakers{});
    VbBool fix = vbFalse, def = 0;
    EXPECT_EQ(forms.ObjFormat(fix, def), nullptr);
    EXPECT_EQ(forms.ObjCapital(), nullptr);
    EXPECT_EQ(forms.ObjNewFATR(), nullptr);
}

TEST_F(FormsTest, AFailureInsideAnOperationLeavesTheResultEmpty) {
    ScreenMakers m = makers();
    m.frmNewFATR = [](Component&) -> std::shared_ptr<Screen> { throw std::runtime_error("boom"); };
    Forms forms(catalogue_, ui_, m);
    EXPECT_EQ(forms.ObjNewFATR(), nullptr);
}

TEST(ErrorLog, AppendsOneTabSeparatedLineWithTheContextUnderTheProgramFolder) {
    const auto dir = std::filesystem::temp_directory_path() / ("brenlow-log-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    ErrorLog log(dir.string());
    // The remaining-life function logs a date it cannot read under its own module and
    // procedure and answers 0; a readable date logs nothing.
    EXPECT_EQ(GETREMLIFEYRS(log, "15062010", 2014, 2, 0, 10), 6);
    EXPECT_EQ(log.logged(), 0);
    EXPECT_EQ(GETREMLIFEYRS(log, "15x62010", 2014, 2, 0, 10), 0);
    EXPECT_EQ(log.logged(), 1);
    const bool ok = guarded(log, "frmNewFATR", "LoadRegister", [] {
        throw store::DbError(1146, "Table 'x.NewFATRo2015' doesn't exist", "select * from NewFATRo2015");
    });
    EXPECT_FALSE(ok);
    guarded(log, "frmblockM", "cmdupdateded_Click", [] { throw std::runtime_error("a\tb\nc"); });
    EXPECT_TRUE(guarded(log, "frmblockM", "cmdback_Click", [] {}));

    std::ifstream in(dir / "TarrowLog.log");
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    const std::vector<std::string> expected = {
        "-1\tType mismatch: the date of put to use \"15x62010\" is not a date "
        "(ddmmyyyy)\tBrenlow\t\tMODULE1\t"
        "GETREMLIFEYRS",
        "1146\tTable 'x.NewFATRo2015' doesn't exist\tDatabase\tselect * from NewFATRo2015\tfrmNewFATR\t"
        "LoadRegister",
        // A description with tabs or line breaks stays one line of fixed fields.
        "-1\ta b c\tBrenlow\t\tfrmblockM\tcmdupdateded_Click"};
    EXPECT_EQ(lines, expected);
    EXPECT_EQ(log.logged(), 3);
    std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace brenlow::frame
