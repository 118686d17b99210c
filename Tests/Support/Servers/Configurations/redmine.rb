# What the tracker begins with: people with their keys, projects, and what may be done in them by whom.
Redmine::DefaultData::Loader.load("en")
Setting.rest_api_enabled = "1"

developer = Role.find_by!(name: "Developer")
developer.add_permission!(:view_issue_watchers, :add_issue_watchers, :delete_issue_watchers)
Role.create!(name: "Guest", permissions: [:view_issues])
designs = Project.create!(name: "Designs", identifier: "designs", is_public: false)
Project.create!(name: "Elsewhere", identifier: "elsewhere", is_public: false)
closed = Project.create!(name: "Closed", identifier: "closed", is_public: false, status: Project::STATUS_CLOSED)

{"ada" => "Developer", "bob" => "Developer", "eve" => "Guest", "mia" => "Manager"}.each do |login, role|
  person = User.new(firstname: login.capitalize, lastname: "Example", mail: "#{login}@example.org")
  person.login = login
  person.password = person.password_confirmation = ENV.fetch("QUILLET_PASSWORD")
  person.save!
  [designs, closed].each { |project| Member.create!(project: project, principal: person, roles: [Role.find_by!(name: role)]) }
  puts "#{login} #{person.api_key}"
end
