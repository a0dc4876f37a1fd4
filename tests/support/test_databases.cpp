#include "support/test_databases.h"

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <random>

namespace brenlow::test {

namespace {

constexpr const char* mysql_variable = "BRENLOW_TEST_MYSQL";

std::string mysql_server_url() {
    const char* url = std::getenv(mysql_variable);
    return url ? url : "";
}

// A name no other test (in this or another process) is using right now.
std::string unique_suffix() {
    static std::atomic<unsigned> counter{0};
    std::random_device rd;
    return std::to_string(::getpid()) + "_" + std::to_string(counter++) + "_" + std::to_string(rd() % 100000);
}

// "mysql://u@h/?socket=s" with the database path replaced by name.
std::string with_database(const std::string& server_url, const std::string& name) {
    const auto authority = server_url.find("://");
    const auto query = server_url.find('?');
    const auto slash = server_url.find('/', authority == std::string::npos ? 0 : authority + 3);
    const auto path_end = query == std::string::npos ? server_url.size() : query;
    if (slash == std::string::npos || slash > path_end) {
        return server_url.substr(0, path_end) + "/" + name + server_url.substr(path_end);
    }
    return server_url.substr(0, slash + 1) + name + server_url.substr(path_end);
}

}  // namespace

bool mysql_configured() {
    return !mysql_server_url().empty();
}

TempDatabase::TempDatabase(store::Backend backend) : backend_(backend) {
    if (backend == store::Backend::sqlite) {
        auto pattern = (std::filesystem::temp_directory_path() / "brenlow-test-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) throw store::DbError(0, "Cannot make a temporary folder " + pattern);
        folder_ = pattern;
        url_ = "sqlite:" + folder_ + "/test.db";
    } else {
        const auto server_url = mysql_server_url();
        if (server_url.empty()) throw store::DbError(0, std::string(mysql_variable) + " is not set.");
        server_ = store::open_database(with_database(server_url, ""));
        mysql_name_ = "brenlow_test_" + unique_suffix();
        server_->execute("CREATE DATABASE " + mysql_name_ +
                         " CHARACTER SET utf8mb4 COLLATE utf8mb4_general_ci");
        url_ = with_database(server_url, mysql_name_);
    }
    db_ = store::open_database(url_);
}

TempDatabase::~TempDatabase() {
    db_.reset();
    if (!folder_.empty()) {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    if (server_) {
        try {
            server_->execute("DROP DATABASE IF EXISTS " + mysql_name_);
        } catch (...) {
        }
    }
}

std::unique_ptr<store::Database> TempDatabase::open_another() const {
    return store::open_database(url_);
}

void BackendTest::SetUp() {
    if (GetParam() == store::Backend::mysql && !mysql_configured()) {
        // Under scripts/test.sh every backend must run: a missing server is a failure there.
        if (const char* required = std::getenv("BRENLOW_REQUIRE_BACKENDS"); required && *required == '1')
            GTEST_FAIL()
                << "MySQL case not run: BRENLOW_REQUIRE_BACKENDS=1 but BRENLOW_TEST_MYSQL is not set.";
        GTEST_SKIP()
            << "MySQL case skipped: set BRENLOW_TEST_MYSQL (or run under scripts/with-test-mariadb.sh).";
    }
    temp_ = std::make_unique<TempDatabase>(GetParam());
}

void BackendTest::TearDown() {
    temp_.reset();
}

std::string backend_name(const ::testing::TestParamInfo<store::Backend>& info) {
    return info.param == store::Backend::sqlite ? "sqlite" : "mysql";
}

}  // namespace brenlow::test

namespace brenlow::store {
void PrintTo(Backend backend, std::ostream* os) {
    *os << (backend == Backend::sqlite ? "sqlite" : "mysql");
}
}  // namespace brenlow::store
