#include "core/attribution/DevClassifierTables.hpp"

namespace ostrivane::DevClassifier {

namespace {

constexpr auto runtime = Category::runtime;
constexpr auto server = Category::server;
constexpr auto database = Category::database;
constexpr auto container = Category::container;
constexpr auto ai = Category::ai;
constexpr auto buildTool = Category::buildTool;

} // namespace

// clang-format off
constexpr std::array<TableRow, 55> executables{{
    {"node", {"Node", runtime}},
    {"bun", {"Bun", runtime}},
    {"deno", {"Deno", runtime}},
    {"python", {"Python", runtime}},
    {"python3", {"Python", runtime}},
    {"uv", {"uv", buildTool}},
    {"uvicorn", {"Uvicorn", server}},
    {"gunicorn", {"Gunicorn", server}},
    {"poetry", {"Poetry", buildTool}},
    {"ruby", {"Ruby", runtime}},
    {"puma", {"Puma", server}},
    {"rails", {"Rails", server}},
    {"php", {"PHP", runtime}},
    {"php-fpm", {"PHP-FPM", server}},
    {"frankenphp", {"FrankenPHP", server}},
    {"java", {"Java", runtime}},
    {"gradle", {"Gradle", buildTool}},
    {"mvn", {"Maven", buildTool}},
    {"go", {"Go", buildTool}},
    {"air", {"Go (air)", server}},
    {"cargo", {"Cargo", buildTool}},
    {"rustc", {"Rust", buildTool}},
    {"rust-analyzer", {"rust-analyzer", buildTool}},
    {"dotnet", {".NET", runtime}},
    {"elixir", {"Elixir", runtime}},
    {"beam.smp", {"Erlang/Elixir", runtime}},
    {"postgres", {"Postgres", database}},
    {"mysqld", {"MySQL", database}},
    {"mariadbd", {"MariaDB", database}},
    {"redis-server", {"Redis", database}},
    {"valkey-server", {"Valkey", database}},
    {"mongod", {"MongoDB", database}},
    {"memcached", {"Memcached", database}},
    {"clickhouse", {"ClickHouse", database}},
    {"meilisearch", {"Meilisearch", database}},
    {"nginx", {"nginx", server}},
    {"httpd", {"Apache", server}},
    {"caddy", {"Caddy", server}},
    {"docker", {"Docker", container}},
    {"com.docker.backend", {"Docker", container}},
    {"colima", {"Colima", container}},
    {"limactl", {"Lima", container}},
    {"podman", {"Podman", container}},
    {"orbstack", {"OrbStack", container}},
    {"ollama", {"Ollama", ai}},
    {"llama-server", {"llama.cpp", ai}},
    {"llama-cli", {"llama.cpp", ai}},
    {"llamafile", {"llamafile", ai}},
    {"lms", {"LM Studio", ai}},
    {"koboldcpp", {"KoboldCpp", ai}},
    {"whisper-server", {"whisper.cpp", ai}},
    {"mlx_lm.server", {"MLX", ai}},
    {"hugo", {"Hugo", server}},
    {"jekyll", {"Jekyll", server}},
    {"tsserver", {"TypeScript", buildTool}},
}};

// Command lines hold several of these: `uvicorn myapp.fastapi` is Uvicorn because that row stands first.
constexpr std::array<TableRow, 39> hintNeedles{{
    {"vite", {"Vite", server}},
    {"next", {"Next.js", server}},
    {"nuxt", {"Nuxt", server}},
    {"astro", {"Astro", server}},
    {"webpack", {"webpack", server}},
    {"remix", {"Remix", server}},
    {"svelte-kit", {"SvelteKit", server}},
    {"storybook", {"Storybook", server}},
    {"nodemon", {"nodemon", server}},
    {"ts-node", {"ts-node", runtime}},
    {"tsx", {"tsx", runtime}},
    {"expo", {"Expo", server}},
    {"react-scripts", {"Create React App", server}},
    {"ng serve", {"Angular", server}},
    {"wrangler", {"Wrangler", server}},
    {"artisan", {"Laravel", server}},
    {"queue:work", {"Laravel queue", server}},
    {"manage.py", {"Django", server}},
    {"flask", {"Flask", server}},
    {"uvicorn", {"Uvicorn", server}},
    {"fastapi", {"FastAPI", server}},
    {"jupyter", {"Jupyter", server}},
    {"streamlit", {"Streamlit", server}},
    {"gradio", {"Gradio", server}},
    {"http.server", {"Python http.server", server}},
    {"celery", {"Celery", server}},
    {"mlx_lm", {"MLX", ai}},
    {"mlx-lm", {"MLX", ai}},
    {"vllm", {"vLLM", ai}},
    {"text-generation", {"text-generation", ai}},
    {"comfyui", {"ComfyUI", ai}},
    {"comfyui", {"ComfyUI", ai}}, // spelled "ComfyUI" where it is installed; in lower case the row above is it already
    {"transformers", {"Transformers", ai}},
    {"llama_cpp", {"llama.cpp", ai}},
    {"open-webui", {"Open WebUI", ai}},
    {"gradle", {"Gradle", buildTool}},
    {"spring", {"Spring", server}},
    {"rails server", {"Rails", server}},
    {"jekyll", {"Jekyll", server}},
}};
// clang-format on

constexpr std::array<AIBundleRule, 6> macAIBundles{{
    {"lm studio", "LM Studio"},
    {"ollama", "Ollama"},
    {"/jan.app", "Jan", true}, // short enough to occur in other paths
    {"gpt4all", "GPT4All"},
    {"msty", "Msty"},
    {"draw things", "Draw Things"},
}};

constexpr std::array<AIBundleRule, 5> linuxAIBundles{{
    {"lm-studio", "LM Studio"},
    {"ai.jan", "Jan"},
    {"gpt4all", "GPT4All"},
    {"msty", "Msty"},
    {"ollama", "Ollama"},
}};

} // namespace ostrivane::DevClassifier
