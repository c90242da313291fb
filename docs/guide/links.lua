-- The pages lead to each other as HTML, too.
function Link(link)
    link.target = link.target:gsub("^(user%-guide[%a.]*)%.md$", "%1.html")
    return link
end
