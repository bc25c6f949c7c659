#include "tests/cli/posix/program_fixture.h"

namespace fs = std::filesystem;

namespace {

// Sorts by some headings, and puts the order of the files after each in the place of the page, where the
// browser's dump has it; so also what was fetched, and how large the pictures are.
constexpr auto visitor = R"(<script>
addEventListener("load", () => {
  const files = () => [...document.querySelectorAll("b")].map(name => name.textContent).join(" ");
  const sort = name => {
    [...document.querySelectorAll("th button")].find(heading => heading.textContent === name).click();
    return name + ": " + files() + ". ";
  };
  const visit = ["File", "Result", "Size", "Size"].map(sort).join("");
  const fetched = performance.getEntriesByType("resource").filter(entry => !entry.name.startsWith("data:"));
  const pictures = [...document.images].map(picture => picture.naturalWidth + " by " + picture.naturalHeight);
  document.body.textContent = `${visit}${fetched.length} fetched, ${document.title}, ${pictures}`;
});
</script>)";

class report_test : public folder_fixture {
protected:
    [[nodiscard]] std::string visit(const std::string& page) const {
        write_file("visited.html", read_file(page) + visitor);
        const std::string browser =
            "HOME='" + m_scratch.inq_path().string() +
            "' chromium --headless --no-sandbox --disable-gpu --virtual-time-budget=9999 "
            "--dump-dom 'file://" +
            (m_folder / "visited.html").string() + "' >visited 2>browser-errors";
        EXPECT_EQ(std::system(browser.c_str()), 0) << read_file("browser-errors");
        return read_file("visited");
    }
};

TEST_F(report_test, is_a_page) {
    if (std::system("command -v chromium >/dev/null") != 0)
        GTEST_SKIP() << "there is no chromium to look at the page";
    fs::copy_file(SAMPLE_FILE, "in/a.cr2");
    fs::copy_file(SAMPLE_FILE, "in/d.cr2");
    fs::copy_file(fs::path(SAMPLE_FILE).parent_path() / "d60_12bit_table2_portrait.crw",
                  "in/b<img src=x onerror=\"document.title=0\">.crw");
    write_file("in/c&lt;.cr2", "no picture");
    fs::create_directory("out");
    write_file("out/d.tif", "");
    EXPECT_EQ(
        run({"-rd", "out", "in", "--existing", "skip", "--report", "all.html", "--compression", "zstd"}), 1);
    const std::string seen = visit("all.html");
    const std::string b = "b&lt;img src=x onerror=\"document.title=0\"&gt;.crw";
    const std::string c = "c&amp;lt;.cr2";
    for (const std::string& part : {
             "File: a.cr2 " + b + ' ' + c + " d.cr2. ",
             "Result: " + c + " a.cr2 " + b + " d.cr2. ",
             "Size: a.cr2 " + b + ' ' + c + " d.cr2. ",
             "Size: " + b + " a.cr2 " + c + " d.cr2. ",
             std::string("0 fetched, Conversion report, 159 by 240,240 by 180"),
         })
        EXPECT_NE(seen.find(part), std::string::npos) << part << '\n' << seen;
}

TEST_F(report_test, appears_when_the_run_ends) {
    fs::copy_file(SAMPLE_FILE, "in/a.cr2");
    fs::copy_file(SAMPLE_FILE, "in/b hang.cr2");
    EXPECT_EQ(run({"-rd", "out", "in", "-j", "1", "--report", "all.html"},
                  std::string(preload) + "timeout -s INT 2"),
              124);
    const std::string page = read_file("all.html");
    for (const char* const part : {"<p>interrupted: 1 converted", "1 left", "<b>a.cr2</b>", "</html>"})
        EXPECT_NE(page.find(part), std::string::npos) << part;
    EXPECT_EQ(page.find("hang.cr2"), std::string::npos);
    EXPECT_EQ(run({"in/a.cr2", "--report", "none/all.html"}), 2);
    EXPECT_EQ(run({"in/a.cr2", "--report", "in/a.cr2"}), 2);
    EXPECT_EQ(run({"in/a.cr2", "--report", "all.html"}, "TMPDIR=none"), 2); // where the rows are kept
    EXPECT_EQ(list_outputs(), "out/a.tif ");
}

TEST_F(report_test, is_too_large) {
    write_file("in/bad.cr2", "");
    EXPECT_EQ(run({"-r", "in", "--json", "--report", "all.html"}, "ulimit -f 8;"), 3);
    EXPECT_NE(m_errors.find("cannot write all.html: File too large"), std::string::npos) << m_errors;
    EXPECT_EQ(m_output.find(R"("sum")"), m_output.rfind(R"("sum")")) << m_output;
    EXPECT_NE(m_output.find(R"("ending":"stopped"})"), std::string::npos) << m_output;
    EXPECT_EQ(list_outputs(), "");
}

} // namespace
